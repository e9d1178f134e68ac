// SPDX-License-Identifier: MIT
#include <toupcam/trace/replay/PReplayReader.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <sys/stat.h>

namespace {

const QByteArray header = R"({"trace":1,"program":"pcdctl"})"
                          "\n";
const QByteArray hueCall =
    R"({"at":5,"in":{"Hue":3,"h":"h1"},"kind":"call","name":"Toupcam_put_Hue","number":1,"thread":"t1"})"
    "\n";
const QByteArray hueReturn =
    R"({"at":9,"kind":"return","name":"Toupcam_put_Hue","number":1,"out":{},"result":"0x00000000","thread":"t1"})"
    "\n";
const QByteArray frame =
    R"({"at":20,"in":{"bSnap":1,"h":"h1","pData":{"bytes":8,"crc32":"0x0000000a","offset":16},)"
    R"("pHeader":{"biSize":40,"biWidth":3,"biHeight":2,"biPlanes":1,"biBitCount":8,"biCompression":0,)"
    R"("biSizeImage":8,"biXPelsPerMeter":0,"biYPelsPerMeter":0,"biClrUsed":0,"biClrImportant":0}},)"
    R"("kind":"callback","name":"data","number":1,"thread":"t2"})"
    "\n";

QString findProblem(const QByteArray& bytes) {
    try {
        PReplayReader::read(bytes);
        return {};
    } catch (const PReplayError& error) {
        return QString::fromUtf8(error.what());
    }
}

TEST(PReplayReader, a_call_has_its_line_its_arguments_and_its_result) {
    const PReplayRecording recording = PReplayReader::read(header + hueCall + hueReturn);
    EXPECT_EQ(recording.header.value(u"program"_qs).toString(), u"pcdctl"_qs);
    ASSERT_EQ(recording.calls.size(), 1U);
    const PReplayCall& call = recording.calls[0];
    EXPECT_EQ(call.line, 2);
    EXPECT_EQ(call.returnLine, 3);
    EXPECT_EQ(call.at, 5);
    EXPECT_EQ(call.handle, 1);
    EXPECT_TRUE(call.isChange);
    EXPECT_EQ(call.result.toString(), u"0x00000000"_qs);
    EXPECT_EQ(PReplayCall::toText(call.name, call.in), u"Toupcam_put_Hue(Hue=3, h=h1)"_qs);
    EXPECT_EQ(recording.notice, QString());
}

TEST(PReplayReader, a_call_that_did_not_return_has_no_line_of_its_return) {
    const PReplayRecording recording = PReplayReader::read(header + hueCall);
    ASSERT_EQ(recording.calls.size(), 1U);
    EXPECT_EQ(recording.calls[0].returnLine, 0);
    EXPECT_TRUE(recording.calls[0].result.isUndefined());
}

TEST(PReplayReader, a_frame_has_its_header_and_its_pixels) {
    const PReplayRecording recording = PReplayReader::read(header + frame);
    ASSERT_EQ(recording.callbacks.size(), 1U);
    const PReplayCallback& callback = recording.callbacks[0];
    EXPECT_EQ(callback.kind, PReplayCallback::Kind::Data);
    EXPECT_EQ(callback.at, 20);
    EXPECT_TRUE(callback.isSnapshot);
    ASSERT_TRUE(callback.header);
    EXPECT_EQ(callback.header->biWidth, 3);
    ASSERT_TRUE(callback.pixels);
    EXPECT_EQ(callback.pixels->bytes, 8U);
    EXPECT_EQ(callback.pixels->checksum, 10U);
    EXPECT_EQ(callback.pixels->offset, 16);
}

TEST(PReplayReader, a_last_line_that_was_cut_off_is_left_out_and_reported) {
    const PReplayRecording recording = PReplayReader::read(header + hueCall + hueReturn.left(30));
    EXPECT_EQ(recording.calls.size(), 1U);
    EXPECT_EQ(recording.notice, u"line 3 was cut off, and is left out"_qs);
}

struct ProblemRow {
    const char* name;
    QByteArray bytes;
    const char* message;
};

QByteArray changed(QByteArray line, const char* before, const char* after) {
    return header + line.replace(before, after);
}

QByteArray changedReturn(const char* before, const char* after) {
    return header + hueCall + QByteArray(hueReturn).replace(before, after);
}

const ProblemRow problems[] = {
    {"nothing", "", "line 1: it is not complete, expected the header of a trace"},
    {"half_a_header", header.left(10), "line 1: it is not complete"},
    {"another_file", "GIF89a\n", "line 1: illegal value at character 2, expected a JSON object"},
    {"an_array", "[]\n", "line 1: expected a JSON object"},
    {"another_object", "{\"cameras\":[]}\n",
     "line 1: expected the header of a trace, with \"trace\": 1"},
    {"a_later_version", "{\"trace\":2}\n", "line 1: the trace is of version 2, expected version 1"},
    {"a_deep_line", header + QByteArray(100000, '[') + '\n', "line 2: "},
    {"an_empty_line", header + "\n", "line 2: illegal value at character 1"},
    {"bytes_that_are_not_text", header + QByteArray("\xff\0\n", 3), "line 2: "},
    {"an_unknown_kind", header + "{\"kind\":\"note\"}\n",
     "line 2: kind is \"note\", expected call, return, callback or done"},
    {"an_unknown_function", changed(hueCall, "put_Hue", "put_Hew"),
     "line 2: the SDK has no function \"Toupcam_put_Hew\""},
    {"a_call_without_arguments", changed(hueCall, "\"in\"", "\"inn\""),
     "line 2: in: expected an object"},
    {"a_call_without_a_handle", changed(hueCall, "\"h\"", "\"H\""),
     "line 2: h: expected a handle such as \"h1\", or null"},
    {"a_call_without_a_number", changed(hueCall, "\"number\":1", "\"number\":0"),
     "line 2: number: expected a whole number from 1 to"},
    {"a_call_before_the_beginning", changed(hueCall, "\"at\":5", "\"at\":-5"),
     "line 2: at: expected a whole number from 0 to"},
    {"a_time_with_a_fraction", changed(hueCall, "\"at\":5", "\"at\":5.5"), "line 2: at: "},
    {"a_return_without_a_call", header + hueReturn,
     "line 2: expected the number of a call that has not returned"},
    {"a_second_return", header + hueCall + hueReturn + hueReturn, "line 4: expected the number"},
    {"a_return_of_another_function", changedReturn("put_Hue", "get_Hue"),
     "line 3: expected the return of Toupcam_put_Hue on line 2"},
    {"a_result_in_decimal", changedReturn("\"0x00000000\"", "0"),
     "line 3: result: expected 0x and eight hexadecimal digits"},
    {"an_output_that_there_is_not", changedReturn("\"out\":{}", "\"out\":{\"Hue\":3}"),
     "line 3: out.Hue is not what this function writes"},
    {"an_unknown_callback", changed(frame, "\"name\":\"data\"", "\"name\":\"date\""),
     "line 2: the SDK has no callback \"date\""},
    {"a_frame_larger_than_its_header", changed(frame, "\"bytes\":8", "\"bytes\":9"),
     "line 2: pData has 9 bytes, expected the 8 that pHeader declares"},
    {"a_frame_without_a_size_that_has_one",
     changed(frame, R"("bytes":8,"crc32":"0x0000000a","offset":16)", ""),
     "line 2: pData has 0 bytes, expected the 8 that pHeader declares"},
    {"a_frame_larger_than_the_limit", changed(frame, "\"bytes\":8", "\"bytes\":1073741825"),
     "line 2: bytes: expected a whole number from 1 to 1073741824"},
    {"a_header_with_a_field_too_large", changed(frame, "\"biPlanes\":1", "\"biPlanes\":65536"),
     "line 2: pHeader.biPlanes: expected a number that it can be"},
    {"a_frame_without_a_checksum", changed(frame, "0x0000000a", "10"), "line 2: crc32: "},
    {"a_frame_before_the_file", changed(frame, "\"offset\":16", "\"offset\":-1"),
     "line 2: offset: expected a whole number from 0"},
    {"an_end_of_no_callback", header + "{\"kind\":\"done\",\"name\":\"data\",\"number\":1}\n",
     "line 2: expected number and name of a callback that has not returned"},
};

class TraceProblem : public RowTest<ProblemRow> {};

ROW_TEST(TraceProblem, is_named_with_its_line) {
    const QString problem = findProblem(GetParam().bytes);
    EXPECT_TRUE(problem.startsWith(QString::fromLatin1(GetParam().message)))
        << problem.toStdString();
}

ROWS_IN(PReplayReader, TraceProblem, problems);

TEST(PReplayReader, no_cut_anywhere_is_read_as_something_else) {
    const QByteArray whole = header + hueCall + hueReturn + frame;
    for (qsizetype length = header.size(); length < whole.size(); ++length) {
        const QString problem = findProblem(whole.left(length));
        EXPECT_EQ(problem, QString()) << length;
    }
}

class PReplayReaderFile : public FolderTest {
protected:
    static QString findFileProblem(const QString& file) {
        try {
            PReplayReader::readFile(file);
            return {};
        } catch (const PReplayError& error) {
            return QString::fromUtf8(error.what());
        }
    }
};

TEST_F(PReplayReaderFile, a_file_that_is_missing_is_reported_with_the_reason) {
    EXPECT_EQ(findFileProblem(path(u"none"_qs)), u"cannot be read: No such file or directory"_qs);
}

TEST_F(PReplayReaderFile, folders_pipes_and_devices_are_not_read) {
    ASSERT_EQ(mkfifo(path(u"pipe"_qs).toLocal8Bit().constData(), 0600), 0);
    for (const QString& name : {path(QString()), path(u"pipe"_qs), u"/dev/zero"_qs})
        EXPECT_EQ(findFileProblem(name), u"it is not a file, expected a trace"_qs);
}

TEST_F(PReplayReaderFile, a_line_without_an_end_is_not_read_to_its_end) {
    writeFile(path(u"long"_qs), header + QByteArray(5 << 20, 'x'));
    EXPECT_EQ(findFileProblem(path(u"long"_qs)),
              u"line 2: it has more than 1048576 bytes, expected a JSON object"_qs);
}

TEST_F(PReplayReaderFile, a_file_that_ends_within_a_line_is_read_up_to_it) {
    writeFile(path(u"cut"_qs), header + hueCall + hueReturn.chopped(1));
    const PReplayRecording recording = PReplayReader::readFile(path(u"cut"_qs));
    EXPECT_EQ(recording.calls.size(), 1U);
    EXPECT_EQ(recording.notice, u"line 3 was cut off, and is left out"_qs);
}

} // namespace
