// SPDX-License-Identifier: MIT
// The library that replays, as a client of the SDK sees it. All tests use one trace, because a
// process replays one.
#include <toupcam/trace/format/PTraceFrame.h>
#include <toupcam/trace/format/PTraceRecords.h>
#include <toupcam/trace/format/PTraceText.h>
#include <toupcam/trace/replay/toupcamreplay.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>
#include <support/WaitUntil.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QList>

#include <array>
#include <atomic>
#include <cstring>

namespace {

const QByteArray recordedPixels = "0123456789abcdef"; // 2 x 2 recordedPixels of 32 bits

/// Writes traces, as the library that records does.
class TraceText {
public:
    void addHeader() {
        add({{u"trace"_qs, 1},
             {u"frames"_qs, u"whole"_qs},
             {u"sdk"_qs, QJsonObject{{u"simulated"_qs, false}, {u"version"_qs, u"9.8"_qs}}}});
    }
    void addCall(const QString& name, const QJsonObject& in, const QJsonObject& out = {},
                 const QJsonValue& result = PTraceText::fromResult(S_OK)) {
        QJsonObject line = makeLine(u"call"_qs, name, ++m_calls);
        line.insert(u"in"_qs, in);
        add(line);
        line = makeLine(u"return"_qs, name, m_calls);
        line.insert(u"out"_qs, out);
        if (!result.isUndefined())
            line.insert(u"result"_qs, result);
        add(line);
    }
    void addCallback(const QString& name, const QJsonObject& in) {
        QJsonObject line = makeLine(u"callback"_qs, name, ++m_callbacks);
        line.insert(u"in"_qs, in);
        add(line);
        add(makeLine(u"done"_qs, name, m_callbacks));
    }
    const QByteArray& bytes() const { return m_bytes; }

private:
    QJsonObject makeLine(const QString& kind, const QString& name, int number) {
        return {{u"at"_qs, ++m_at},
                {u"kind"_qs, kind},
                {u"name"_qs, name},
                {u"number"_qs, number},
                {u"thread"_qs, u"t1"_qs}};
    }
    void add(const QJsonObject& line) {
        m_bytes += QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
    }

    QByteArray m_bytes;
    int m_calls = 0;
    int m_callbacks = 0;
    int m_at = 0;
};

QJsonObject onHandle(QJsonObject more = {}) {
    more.insert(u"h"_qs, u"h1"_qs);
    return more;
}

const QJsonObject registered{{u"funcEvent"_qs, u"function"_qs}, {u"ctxEvent"_qs, u"address"_qs}};

/// What a pull reports, and the arguments of one.
QJsonObject makeInfo(int width) {
    return PTraceRecords::fromInfo({unsigned(width), 2, 3, 7, 99});
}
QJsonObject makePull(bool withMemory) {
    return onHandle({{u"bits"_qs, 32},
                     {u"pImageData"_qs,
                      withMemory ? QJsonValue(u"address"_qs) : QJsonValue(QJsonValue::Null)}});
}
QJsonObject makePixels() {
    return {{u"bytes"_qs, recordedPixels.size()},
            {u"crc32"_qs,
             PTraceFrame::checksum(recordedPixels.constData(), std::size_t(recordedPixels.size()))},
            {u"offset"_qs, 0}};
}

QByteArray makeTrace() {
    TraceText trace;
    trace.addHeader();
    ToupcamModelV2 model{};
    model.name = "Model";
    ToupcamDeviceV2 device{};
    std::strcpy(device.id, "cam");
    device.model = &model;
    trace.addCall(u"Toupcam_EnumV2"_qs, {}, {{u"pti"_qs, PTraceRecords::fromDevices(&device, 1)}},
                  1);
    trace.addCall(u"Toupcam_Open"_qs, {{u"camId"_qs, u"cam"_qs}}, {}, u"h1"_qs);
    trace.addCall(u"Toupcam_Open"_qs, {{u"camId"_qs, u"gone"_qs}}, {}, QJsonValue::Null);
    trace.addCall(u"Toupcam_get_SerialNumber"_qs, onHandle(), {{u"sn"_qs, u"S-1"_qs}});
    trace.addCall(u"Toupcam_get_MaxSpeed"_qs, onHandle(), {}, PTraceText::fromResult(3));
    trace.addCall(u"Toupcam_get_Hue"_qs, onHandle(), {{u"Hue"_qs, -5}},
                  PTraceText::fromResult(E_FAIL));
    trace.addCall(u"Toupcam_StartPullModeWithCallback"_qs, onHandle(registered));
    trace.addCallback(u"event"_qs, onHandle({{u"nEvent"_qs, TOUPCAM_EVENT_IMAGE}}));
    trace.addCall(u"Toupcam_PullImageV2"_qs, makePull(false), {{u"pInfo"_qs, makeInfo(2)}});
    trace.addCall(u"Toupcam_PullImageV2"_qs, makePull(true),
                  {{u"pInfo"_qs, makeInfo(2)}, {u"pImageData"_qs, makePixels()}});
    trace.addCallback(u"event"_qs, onHandle({{u"nEvent"_qs, TOUPCAM_EVENT_IMAGE}}));
    trace.addCall(u"Toupcam_PullImageV2"_qs, makePull(false), {{u"pInfo"_qs, makeInfo(1)}});
    trace.addCall(u"Toupcam_PullImageV2"_qs, makePull(true),
                  {{u"pInfo"_qs, makeInfo(2)}, {u"pImageData"_qs, makePixels()}});
    trace.addCallback(u"event"_qs, onHandle({{u"nEvent"_qs, TOUPCAM_EVENT_DISCONNECTED}}));
    trace.addCall(u"Toupcam_Stop"_qs, onHandle());
    trace.addCall(u"Toupcam_Close"_qs, onHandle(), {}, QJsonValue::Undefined);
    trace.addCall(u"Toupcam_HotPlug"_qs, {}, {}, QJsonValue::Undefined);
    return trace.bytes();
}

/// Pulls a frame for each event that announces one, with memory for 2 x 2 recordedPixels.
struct PullingClient {
    static void receive(unsigned event, void* context) {
        auto& client = *static_cast<PullingClient*>(context);
        if (event == TOUPCAM_EVENT_IMAGE)
            client.pull();
        else
            client.isGone = event == TOUPCAM_EVENT_DISCONNECTED;
    }
    void pull() {
        QByteArray memory(recordedPixels.size(), 'x');
        ToupcamFrameInfoV2 info{};
        EXPECT_EQ(Toupcam_PullImageV2(handle, nullptr, 32, &info), S_OK);
        EXPECT_EQ(Toupcam_PullImageV2(handle, memory.data(), 32, &info), S_OK);
        pulled.append(memory);
        widths.append(info.width);
    }

    HToupcam handle = nullptr;
    QList<QByteArray> pulled; // these two on the SDK's thread until isGone
    QList<unsigned> widths;
    std::atomic<bool> isGone{false};
};

TEST(PReplayCallAnswer, answers_a_client_as_it_was_recorded) {
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"a.trace"_qs);
    writeFile(file, makeTrace());
    writeFile(file + u".frames"_qs, recordedPixels);
    ASSERT_STREQ(ToupcamReplay_load(QFile::encodeName(file).constData()), nullptr);
    EXPECT_EQ(ToupcamReplay_isSimulated(), 0);
    EXPECT_STREQ(ToupcamReplay_version(), "9.8");
    EXPECT_STREQ(ToupcamReplay_load("other"), "another trace is being replayed already");

    std::vector<ToupcamDeviceV2> devices(TOUPCAM_MAX);
    ASSERT_EQ(Toupcam_EnumV2(devices.data()), 1U);
    EXPECT_STREQ(devices[0].id, "cam");
    ASSERT_NE(devices[0].model, nullptr);
    EXPECT_STREQ(devices[0].model->name, "Model");
    HToupcam const h = Toupcam_Open("cam");
    ASSERT_NE(h, nullptr);
    EXPECT_EQ(Toupcam_Open("gone"), nullptr);

    std::array<char, 32> serial{};
    EXPECT_EQ(Toupcam_get_SerialNumber(h, serial.data()), S_OK);
    EXPECT_STREQ(serial.data(), "S-1");
    EXPECT_EQ(Toupcam_get_MaxSpeed(h), 3);
    int hue = 0;
    EXPECT_EQ(Toupcam_get_Hue(h, &hue), E_FAIL);
    EXPECT_EQ(hue, -5);

    // More readings than were recorded, and time in which no callback may run yet.
    constexpr int moreReadings = 2000;
    for (int i = 0; i < moreReadings; ++i)
        ASSERT_EQ(Toupcam_get_MaxSpeed(h), 3);

    PullingClient client;
    client.handle = h;
    EXPECT_EQ(Toupcam_StartPullModeWithCallback(h, &PullingClient::receive, &client), S_OK);
    ASSERT_TRUE(waitUntil([&] { return client.isGone.load(); }));
    EXPECT_EQ(client.pulled,
              QList<QByteArray>({recordedPixels, QByteArray(recordedPixels.size(), 'x')}))
        << "memory is written to only if it was made for this size";
    EXPECT_EQ(client.widths, QList<unsigned>({2, 2}));
    EXPECT_EQ(Toupcam_Stop(h), S_OK);
    Toupcam_Close(h);
    EXPECT_EQ(Toupcam_put_Gamma(h, 3), E_UNEXPECTED);
    const QJsonObject report = QJsonDocument::fromJson(ToupcamReplay_report()).object();
    EXPECT_EQ(report.value(u"calls"_qs).toInt(), 14 + moreReadings);
    EXPECT_EQ(report.value(u"notice"_qs).toString(), QString());
    const QJsonArray divergences = report.value(u"divergences"_qs).toArray();
    ASSERT_EQ(divergences.size(), 2);
    EXPECT_TRUE(divergences.first().toString().contains(
        u"Toupcam_put_Gamma(Gamma=3, h=h1) was called after it, and was not recorded"_qs));
    EXPECT_TRUE(divergences.last().toString().contains(
        u"Toupcam_HotPlug() was recorded, but was not called"_qs));
}

} // namespace
