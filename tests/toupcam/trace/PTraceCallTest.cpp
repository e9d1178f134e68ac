// SPDX-License-Identifier: MIT
// The library that records, around the simulated cameras: what is in the trace is compared with the
// journal of the calls that reached them.
#include <toupcam/trace/format/PTraceFrame.h>
#include <toupcam/trace/format/PTraceText.h>
#include <toupcam/trace/record/PTraceRecorder.h>
#include <toupcam/trace/record/toupcamtrace.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>
#include <support/WaitUntil.h>

#include <QFile>
#include <QJsonDocument>
#include <QList>
#include <QRegularExpression>

#include <atomic>
#include <dlfcn.h>
#include <mutex>
#include <vector>

namespace {

/// A function of the simulated SDK, which this program is not linked with: it has the SDK's
/// functions from the library under test.
template <typename Function>
Function simulated(const char* name) {
    static void* const library = dlopen(SIMULATED_SDK, RTLD_NOW | RTLD_LOCAL);
    return reinterpret_cast<Function>(dlsym(library, name));
}

QStringList readJournal() {
    const auto read = simulated<unsigned (*)(unsigned, char*, unsigned)>("ToupcamSim_journal");
    QStringList lines;
    const unsigned count = read(0, nullptr, 0);
    for (unsigned i = 0; i < count; ++i) {
        std::array<char, 512> line{};
        read(i, line.data(), unsigned(line.size()));
        lines.append(QString::fromUtf8(line.data()));
    }
    return lines;
}

/// What a data callback received.
struct Received {
    std::mutex mutex; // guards the list: the push thread adds to it
    std::vector<QString> checksums;
    std::atomic<int> count{0};
    std::atomic<bool> isLost{false};
    QByteArray traceAtFirst; ///< the trace during the first callback
};

class PTraceCallTest : public testing::Test {
protected:
    // One trace for all tests: a process records one.
    static void SetUpTestSuite() {
        const QByteArray name = QFile::encodeName(traceName());
        ASSERT_STREQ(
            ToupcamTrace_start(SIMULATED_SDK, name.constData(), R"({"program": "test"})", 1),
            nullptr);
    }
    static QString traceName() {
        static QTemporaryDir folder;
        return folder.filePath(u"calls.trace"_qs);
    }
    static QList<QJsonObject> readTrace() { return toLines(readFile(traceName())); }
    static QList<QJsonObject> toLines(const QByteArray& trace) {
        QList<QJsonObject> lines;
        for (const QByteArray& line : trace.split('\n'))
            lines.append(QJsonDocument::fromJson(line).object());
        lines.removeLast(); // nothing, or a line that is still being written
        return lines;
    }

    void SetUp() override {
        simulated<void (*)()>("ToupcamSim_reset")();
        simulated<const char* (*)(const char*)>("ToupcamSim_loadScene")(
            R"({"cameras": [{"id": "cam", "serial": "S-1", "resolutions": [{"width": 98, "height": 64, "fps": 200}], "source": {"kind": "patches"}}]})");
        simulated<void (*)()>("ToupcamSim_clearJournal")();
        m_before = readTrace().size();
    }
    /// The lines of this test, of one kind.
    QList<QJsonObject> lines(const QString& kind) const { return ofKind(kind, readTrace()); }
    QList<QJsonObject> ofKind(const QString& kind, const QList<QJsonObject>& trace) const {
        QList<QJsonObject> found;
        for (const QJsonObject& line : trace.mid(m_before)) {
            if (line.value(u"kind"_qs) == kind)
                found.append(line);
        }
        return found;
    }
    QJsonObject last(const QString& kind) const {
        return lines(kind).value(lines(kind).size() - 1);
    }

    static void receive(const void* data, const BITMAPINFOHEADER* header, int, void* context) {
        auto& received = *static_cast<Received*>(context);
        if (data == nullptr) {
            received.isLost = true;
            return;
        }
        const std::lock_guard lock(received.mutex);
        if (received.count == 0)
            received.traceAtFirst = readFile(traceName());
        received.checksums.push_back(PTraceFrame::checksum(data, header->biSizeImage));
        ++received.count;
    }

private:
    qsizetype m_before = 0;
};

TEST_F(PTraceCallTest, every_call_is_in_the_trace_with_its_result) {
    std::vector<ToupcamDeviceV2> devices(TOUPCAM_MAX);
    EXPECT_EQ(Toupcam_EnumV2(devices.data()), 1U);
    HToupcam const h = Toupcam_Open("cam");
    ASSERT_NE(h, nullptr);
    EXPECT_EQ(Toupcam_Open("none"), nullptr);
    int value = 0;
    unsigned short speed = 0;
    Toupcam_put_Hue(h, 12);
    Toupcam_get_Hue(h, &value);
    Toupcam_get_Hue(h, nullptr);
    Toupcam_put_Option(h, 77, -1);
    Toupcam_get_Speed(h, &speed);
    Toupcam_get_MaxSpeed(h);
    char serial[32];
    Toupcam_get_SerialNumber(h, serial);
    Toupcam_Stop(h);
    Toupcam_Close(h);
    const QStringList journal = readJournal();
    const QList<QJsonObject> calls = lines(u"call"_qs);
    const QList<QJsonObject> returns = lines(u"return"_qs);
    ASSERT_EQ(calls.size(), 12);
    ASSERT_EQ(returns.size(), journal.size());
    for (qsizetype i = 0; i < journal.size(); ++i) {
        const QJsonObject& line = returns[i];
        EXPECT_EQ(line.value(u"name"_qs).toString(), journal[i].section(u'(', 0, 0));
        if (const auto code = PTraceText::toResult(line.value(u"result"_qs))) {
            EXPECT_EQ(QString::number(*code), journal[i].section(u" = "_qs, 1)) << i;
        }
    }
}

TEST_F(PTraceCallTest, arguments_and_what_was_written_through_them_have_their_names) {
    HToupcam const h = Toupcam_Open("cam");
    int temperature = 0;
    int tint = 0;
    Toupcam_put_TempTint(h, 5000, 900);
    const QString name = last(u"call"_qs).value(u"in"_qs).toObject().value(u"h"_qs).toString();
    EXPECT_TRUE(name.startsWith(u'h')) << name.toStdString();
    EXPECT_EQ(last(u"call"_qs).value(u"in"_qs).toObject(),
              (QJsonObject{{u"h"_qs, name}, {u"nTemp"_qs, 5000}, {u"nTint"_qs, 900}}));
    Toupcam_get_TempTint(h, &temperature, &tint);
    EXPECT_EQ(last(u"return"_qs).value(u"out"_qs).toObject(),
              (QJsonObject{{u"nTemp"_qs, 5000}, {u"nTint"_qs, 900}}));
    EXPECT_EQ(last(u"return"_qs).value(u"thread"_qs), last(u"call"_qs).value(u"thread"_qs));
    EXPECT_GE(last(u"return"_qs).value(u"at"_qs).toInteger(),
              last(u"call"_qs).value(u"at"_qs).toInteger());
    Toupcam_Close(h);
}

TEST_F(PTraceCallTest, frames_are_recorded_with_their_checksum_and_their_pixels) {
    HToupcam const h = Toupcam_Open("cam");
    Received received;
    ASSERT_EQ(Toupcam_StartPushMode(h, &receive, &received), S_OK);
    ASSERT_TRUE(waitUntil([&] { return received.count >= 3; }));
    Toupcam_Stop(h);
    Toupcam_Close(h);
    const QList<QJsonObject> callbacks = lines(u"callback"_qs);
    const QByteArray pixels = readFile(traceName() + u".frames"_qs);
    ASSERT_EQ(callbacks.size(), qsizetype(received.checksums.size()));
    EXPECT_EQ(lines(u"done"_qs).size(), callbacks.size());
    for (qsizetype i = 0; i < callbacks.size(); ++i) {
        const QJsonObject in = callbacks[i].value(u"in"_qs).toObject();
        const QJsonObject frame = in.value(u"pData"_qs).toObject();
        EXPECT_EQ(in.value(u"pHeader"_qs).toObject().value(u"biWidth"_qs), 98);
        EXPECT_EQ(frame.value(u"crc32"_qs).toString(), received.checksums[std::size_t(i)]);
        const QByteArray stored =
            pixels.mid(frame.value(u"offset"_qs).toInteger(), frame.value(u"bytes"_qs).toInteger());
        EXPECT_EQ(PTraceFrame::checksum(stored.constData(), std::size_t(stored.size())),
                  received.checksums[std::size_t(i)]);
    }
    // The line may be followed by the end of StartPushMode, which is on another thread.
    EXPECT_EQ(ofKind(u"callback"_qs, toLines(received.traceAtFirst)).size(), 1)
        << "a crash in the callback would lose it: " << received.traceAtFirst.toStdString();
}

TEST_F(PTraceCallTest, a_camera_that_is_unplugged_is_recorded_as_the_client_sees_it) {
    HToupcam const h = Toupcam_Open("cam");
    Received received;
    std::atomic<int> plugged{0};
    Toupcam_HotPlug([](void* count) { ++*static_cast<std::atomic<int>*>(count); }, &plugged);
    ASSERT_EQ(Toupcam_StartPushMode(h, &receive, &received), S_OK);
    ASSERT_TRUE(waitUntil([&] { return received.count >= 1; }));
    simulated<int (*)(const char*)>("ToupcamSim_unplug")("cam");
    ASSERT_TRUE(waitUntil([&] { return received.isLost && plugged > 0; }));
    Toupcam_HotPlug(nullptr, nullptr);
    Toupcam_Close(h);
    bool isLost = false;
    bool isPlugged = false;
    for (const QJsonObject& line : lines(u"callback"_qs)) {
        isLost = isLost || line.value(u"in"_qs).toObject().value(u"pData"_qs).isNull();
        isPlugged = isPlugged || line.value(u"name"_qs) == u"hotplug"_qs;
    }
    EXPECT_TRUE(isLost);
    EXPECT_TRUE(isPlugged);
}

TEST_F(PTraceCallTest, a_header_that_does_not_add_up_is_recorded_without_its_pixels) {
    HToupcam const h = Toupcam_Open("cam");
    Received received;
    ASSERT_EQ(Toupcam_StartPushMode(
                  h, [](const void*, const BITMAPINFOHEADER*, int, void*) {}, nullptr),
              S_OK);
    BITMAPINFOHEADER header{};
    header.biWidth = 98;
    header.biHeight = 64;
    header.biBitCount = 8;
    header.biSizeImage = 4000000000U;
    using Push = int (*)(const char*, const void*, const BITMAPINFOHEADER*, int);
    const char byte = 1;
    ASSERT_EQ(simulated<Push>("ToupcamSim_pushRaw")("cam", &byte, &header, 1), 1);
    Toupcam_Close(h);
    qsizetype found = 0;
    for (const QJsonObject& line : lines(u"callback"_qs)) {
        const QJsonObject in = line.value(u"in"_qs).toObject();
        if (in.value(u"bSnap"_qs) != 1)
            continue;
        ++found;
        EXPECT_EQ(in.value(u"pData"_qs), QJsonValue(QJsonObject()));
        EXPECT_EQ(in.value(u"pHeader"_qs).toObject().value(u"biSizeImage"_qs).toInteger(),
                  4000000000);
    }
    EXPECT_EQ(found, 1);
}

TEST_F(PTraceCallTest, pulled_frames_are_recorded_if_their_size_was_announced) {
    HToupcam const h = Toupcam_Open("cam");
    std::atomic<unsigned> images{0};
    ASSERT_EQ(Toupcam_StartPullModeWithCallback(
                  h,
                  [](unsigned event, void* count) {
                      if (event == TOUPCAM_EVENT_IMAGE)
                          ++*static_cast<std::atomic<unsigned>*>(count);
                  },
                  &images),
              S_OK);
    ASSERT_TRUE(waitUntil([&] { return images > 0; }));
    ToupcamFrameInfoV2 info{};
    ASSERT_EQ(Toupcam_PullImageV2(h, nullptr, 32, &info), S_OK);
    std::vector<unsigned char> pixels(std::size_t(info.width) * info.height * 4);
    ASSERT_EQ(Toupcam_PullImageV2(h, pixels.data(), 32, &info), S_OK);
    const QJsonObject out = last(u"return"_qs).value(u"out"_qs).toObject();
    EXPECT_EQ(out.value(u"pInfo"_qs).toObject().value(u"width"_qs), 98);
    EXPECT_EQ(out.value(u"pImageData"_qs).toObject().value(u"crc32"_qs).toString(),
              PTraceFrame::checksum(pixels.data(), pixels.size()));
    // A size that is not that of the client's memory.
    using Report = void (*)(const char*, unsigned, unsigned);
    simulated<Report>("ToupcamSim_reportSize")("Toupcam_PullImageV2", 5000, 5000);
    ASSERT_TRUE(
        waitUntil([&] { return Toupcam_PullImageV2(h, pixels.data(), 32, &info) == S_OK; }));
    EXPECT_EQ(last(u"return"_qs).value(u"out"_qs).toObject().value(u"pImageData"_qs),
              QJsonValue(QJsonObject()));
    Toupcam_Close(h);
    EXPECT_GT(lines(u"callback"_qs).size(), 0);
}

TEST_F(PTraceCallTest, callbacks_about_exposure_and_white_balance_are_recorded) {
    // With light on a specimen, which automatic exposure can measure.
    simulated<const char* (*)(const char*)>("ToupcamSim_loadScene")(
        R"({"cameras": [{"id": "lit", "serial": "S-2", "resolutions": [{"width": 98, "height": 64, "fps": 200}]}]})");
    HToupcam const h = Toupcam_Open("lit");
    std::atomic<int> balanced{0};
    std::atomic<int> exposed{0};
    Toupcam_put_ExpoCallback(
        h, [](void* count) { ++*static_cast<std::atomic<int>*>(count); }, &exposed);
    ASSERT_EQ(Toupcam_StartPushMode(
                  h, [](const void*, const BITMAPINFOHEADER*, int, void*) {}, nullptr),
              S_OK);
    ASSERT_EQ(
        Toupcam_AwbOnePush(
            h, [](const int, const int, void* count) { ++*static_cast<std::atomic<int>*>(count); },
            &balanced),
        S_OK);
    Toupcam_put_AutoExpoEnable(h, 1);
    Toupcam_put_AutoExpoTarget(h, 200);
    ASSERT_TRUE(waitUntil([&] { return balanced > 0 && exposed > 0; }));
    Toupcam_Close(h);
    int temperature = 0;
    bool isExposed = false;
    for (const QJsonObject& line : lines(u"callback"_qs)) {
        if (line.value(u"name"_qs) == u"temptint"_qs)
            temperature = line.value(u"in"_qs).toObject().value(u"nTemp"_qs).toInt();
        isExposed = isExposed || line.value(u"name"_qs) == u"exposure"_qs;
    }
    EXPECT_GT(temperature, 0);
    EXPECT_TRUE(isExposed);
}

TEST_F(PTraceCallTest, a_process_records_one_trace) {
    EXPECT_STREQ(ToupcamTrace_start(SIMULATED_SDK, "/nowhere/trace", "{}", 0),
                 "a trace is being written already");
    EXPECT_EQ(ToupcamTrace_failure(), nullptr);
}

TEST_F(PTraceCallTest, the_first_line_says_what_the_trace_is) {
    const QJsonObject header = readTrace().value(0);
    EXPECT_EQ(
        header,
        (QJsonObject{{u"trace"_qs, 1}, {u"frames"_qs, u"whole"_qs}, {u"program"_qs, u"test"_qs}}));
}

/// The names of the functions that a header declares.
QStringList readFunctions(const QString& header) {
    QStringList names;
    const QString text = QString::fromUtf8(readFile(header));
    static const QRegularExpression declaration(u"TOUPCAM_API\\(\\w+\\)\\s+(Toupcam_\\w+)\\("_qs);
    for (auto found = declaration.globalMatch(text); found.hasNext();)
        names.append(found.next().captured(1));
    return names;
}

TEST(TraceLibraries, export_every_function_of_the_sdk) {
    const QStringList names = readFunctions(QStringLiteral(SDK_HEADER));
    EXPECT_GT(names.size(), 60);
    for (const char* const file : {RECORDING_SDK, REPLAYING_SDK}) {
        void* const library = dlopen(file, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(library, nullptr) << dlerror();
        for (const QString& name : names)
            EXPECT_NE(dlsym(library, name.toLatin1().constData()), nullptr)
                << file << ": " << name.toStdString();
    }
}

} // namespace
