// SPDX-License-Identifier: MIT
// The option --trace.
#include <apps/pcdctl/CtlFiles.h>
#include <apps/pcdctl/CtlProcess.h>
#include <apps/pcdctl/CtlScene.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QMap>

namespace {

class TraceOption : public FolderTest {
protected:
    CtlScene scene =
        CtlScene().addCamera().set(u"flags"_qs, QJsonArray{u"USB30"_qs, u"TRIGGER_SOFTWARE"_qs});

    QString trace() const { return path(u"a.trace"_qs); }
    QString journal() const { return path(u"journal"_qs); }

    CtlResult run(const QStringList& arguments) const {
        const QString file = scene.writeTo(path(u"scene.json"_qs));
        return runCtl(
            arguments + QStringList{u"--sdk=sim"_qs, u"--scene"_qs, file},
            [&](CtlProcess& process) { process.with(u"TOUPCAM_SIM_JOURNAL"_qs, journal()); });
    }
    CtlResult runTraced(const QStringList& arguments) const {
        return run(arguments + QStringList{u"--trace"_qs, trace()});
    }

    QList<QJsonObject> lines() const {
        QList<QJsonObject> found;
        for (const QByteArray& line : readFile(trace()).split('\n')) {
            if (!line.isEmpty())
                found.append(QJsonDocument::fromJson(line).object());
        }
        return found;
    }
    /// How often each function was called, by the trace and by the simulated SDK's journal.
    QMap<QString, int> countTraced() const {
        QMap<QString, int> counts;
        for (const QJsonObject& line : lines()) {
            if (line.value(u"kind"_qs) == u"return"_qs)
                ++counts[line.value(u"name"_qs).toString()];
        }
        return counts;
    }
    QMap<QString, int> countJournal() const {
        QMap<QString, int> counts;
        for (const QByteArray& line : readFile(journal()).split('\n')) {
            if (!line.isEmpty())
                ++counts[QString::fromUtf8(line.left(line.indexOf('(')))];
        }
        return counts;
    }
};

struct TracedRow {
    const char* name;
    const char* arguments; ///< separated by blanks
};

constexpr TracedRow tracedCommands[] = {
    {"list", "list"},
    {"props", "props"},
    {"modes", "modes"},
    {"set", "set contrast=12 negative=on roi=0,0,160,120"},
    {"stream", "stream -n 5"},
    {"trigger", "trigger --count 3 --exposure 2ms"},
    {"monitor", "monitor -t 0.3"},
};

class TracedCommand : public TraceOption, public WithRow<TracedRow> {};

ROW_TEST(TracedCommand, has_every_call_of_the_sdk_in_its_trace) {
    const QStringList arguments = QString::fromLatin1(GetParam().arguments).split(u' ');
    const CtlResult result = runTraced(arguments);
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    const QMap<QString, int> journal = countJournal();
    EXPECT_GE(journal.value(u"Toupcam_EnumV2"_qs), 1);
    EXPECT_EQ(countTraced(), journal);
    const QList<QJsonObject> all = lines();
    const QJsonObject header = all.value(0);
    EXPECT_EQ(header.value(u"trace"_qs), 1);
    EXPECT_EQ(header.value(u"program"_qs), u"pcdctl"_qs);
    EXPECT_EQ(header.value(u"arguments"_qs).toArray().at(0), arguments.value(0));
    EXPECT_EQ(header.value(u"sdk"_qs).toObject().value(u"file"_qs), u"libtoupcam.so"_qs);
    EXPECT_EQ(header.value(u"sdk"_qs).toObject().value(u"simulated"_qs), true);
}

ROWS_IN(Pcdctl, TracedCommand, tracedCommands);

TEST_F(TraceOption, a_traced_still_is_the_picture_that_it_is_without_a_trace) {
    ASSERT_EQ(run({u"snap"_qs, u"-o"_qs, path(u"a.png"_qs)}).exitCode, 0);
    ASSERT_EQ(runTraced({u"snap"_qs, u"-o"_qs, path(u"b.png"_qs)}).exitCode, 0);
    EXPECT_EQ(QImage(path(u"a.png"_qs)).size(), QSize(320, 240));
    EXPECT_EQ(patchColours(QImage(path(u"b.png"_qs))), patchColours(QImage(path(u"a.png"_qs))));
    EXPECT_FALSE(QFile::exists(trace() + u".frames"_qs));
}

TEST_F(TraceOption, whole_frames_are_in_a_file_beside_the_trace) {
    const CtlResult result =
        runTraced({u"stream"_qs, u"-n"_qs, u"3"_qs, u"--trace-frames"_qs, jsonWord});
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    qint64 bytes = 0;
    for (const QJsonObject& line : lines()) {
        const QJsonObject in = line.value(u"in"_qs).toObject();
        bytes += in.value(u"pData"_qs).toObject().value(u"bytes"_qs).toInteger();
    }
    EXPECT_GE(bytes, 3 * 320 * 240 * 3);
    EXPECT_EQ(QFileInfo(trace() + u".frames"_qs).size(), bytes);
}

TEST_F(TraceOption, an_existing_file_is_never_replaced) {
    writeFile(trace(), "mine");
    const CtlResult result = runTraced({u"snap"_qs, u"-o"_qs, path(u"a.png"_qs)});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors,
              u"pcdctl: cannot write the trace \"%1\": File exists\n"_qs.arg(trace()));
    EXPECT_EQ(readFile(trace()), "mine");
    EXPECT_FALSE(QFile::exists(path(u"a.png"_qs)));
    EXPECT_EQ(readFile(journal()), QByteArray()) << "no call may have reached the camera";
}

TEST_F(TraceOption, a_folder_that_is_not_there_is_named) {
    const QString file = path(u"none/a.trace"_qs);
    const CtlResult result = run({listWord, u"--trace"_qs, file});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.output, QByteArray());
    EXPECT_EQ(result.errors,
              u"pcdctl: cannot write the trace \"%1\": No such file or directory\n"_qs.arg(file));
}

TEST_F(TraceOption, a_disk_that_fills_up_ends_the_trace_but_not_the_work) {
    CtlProcess process({u"props"_qs, jsonWord, u"--sdk=sim"_qs, u"--scene"_qs,
                        scene.writeTo(path(u"scene.json"_qs)), u"--trace"_qs, trace()});
    process.with([] { limitFileSize(5000); }).start();
    ASSERT_TRUE(process.finish());
    EXPECT_EQ(process.exitCode(), 1);
    EXPECT_FALSE(process.json().value(u"properties"_qs).toArray().isEmpty())
        << process.output().toStdString();
    EXPECT_TRUE(QString::fromUtf8(process.errors())
                    .contains(u"the trace \"%1\" ends early: File too large"_qs.arg(trace())));
    EXPECT_EQ(QFileInfo(trace()).size(), 5000);
}

TEST_F(TraceOption, an_sdk_that_is_not_simulated_is_traced_too) {
    const CtlResult result =
        runCtl({listWord, u"--sdk"_qs, QStringLiteral(EMPTY_CAMERA_SDK), u"--trace"_qs, trace()});
    EXPECT_EQ(result.exitCode, 3) << result.errors.toStdString();
    EXPECT_GE(countTraced().value(u"Toupcam_EnumV2"_qs), 1);
    EXPECT_EQ(lines().value(0).value(u"sdk"_qs).toObject().value(u"simulated"_qs), false);
}

TEST_F(TraceOption, the_library_that_records_is_loaded_for_a_trace_only) {
    const auto loads = [&](const QStringList& more) {
        CtlProcess process(QStringList{listWord, u"--sdk=sim"_qs} + more);
        process.with(u"LD_DEBUG"_qs, u"files"_qs).start();
        EXPECT_TRUE(process.finish());
        return process.errors().contains("/pcd/trace/libtoupcam.so");
    };
    EXPECT_FALSE(loads({}));
    EXPECT_TRUE(loads({u"--trace"_qs, trace()}));
}

TEST_F(TraceOption, a_doctor_can_be_traced) {
    const CtlResult result = runTraced({u"doctor"_qs, u"--folder"_qs, path(QString())});
    EXPECT_GE(result.exitCode, 0);
    const QMap<QString, int> journal = countJournal();
    EXPECT_GE(journal.value(u"Toupcam_StartPushMode"_qs), 1) << result.output.toStdString();
    EXPECT_EQ(countTraced(), journal);
}

} // namespace
