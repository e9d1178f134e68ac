// SPDX-License-Identifier: MIT
// One opened camera as a session of the SDK: which calls are made, in which order, and what is
// reported.
#include <PTDevice/SimFixture.h>

#include <PCdPlugins/PTDevice/PTStreamThread.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QMutexLocker>
#include <QSignalSpy>

#include <gmock/gmock.h>

#include <chrono>
#include <future>
#include <stdexcept>
#include <thread>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

const std::string bandwidthFlags = R"(["USB30", "BANDWIDTH"])";

class PTDeviceSession : public SimFixture {};

} // namespace

TEST_F(PTDeviceSession, opens_and_applies_the_fixed_settings_in_order) {
    loadScene({SimCameraText().withFlags(bandwidthFlags)});
    const auto device = open();
    EXPECT_THAT(SimJournal::lines(),
                ElementsAre("Toupcam_Open(\"cam\") = h1",
                            "Toupcam_get_SerialNumber(h1, \"TESTCAM001\") = 0",
                            "Toupcam_put_Option(h1, 17, 0) = 0",
                            "Toupcam_put_Option(h1, 22, 1) = 0",
                            "Toupcam_put_Option(h1, 46, 95) = 0", "Toupcam_put_RealTime(h1, 1) = 0",
                            "Toupcam_put_Option(h1, 3, 0) = 0", "Toupcam_put_Option(h1, 42, 1) = 0",
                            "Toupcam_get_MaxSpeed(h1) = 3", "Toupcam_put_Speed(h1, 3) = 0"));
    EXPECT_THAT(ptTexts(log), IsEmpty());
}

TEST_F(PTDeviceSession, a_model_without_the_bandwidth_flag_never_gets_the_bandwidth_option) {
    loadScene({SimCameraText{}});
    ToupcamSim_failOption("Toupcam_put_Option", TOUPCAM_OPTION_BANDWIDTH, 0, 0, E_FAIL);
    const auto device = open();
    for (const std::string& call : SimJournal::calls("Toupcam_put_Option"))
        EXPECT_THAT(call, testing::Not(StartsWith("Toupcam_put_Option(h1, 46")));
    EXPECT_THAT(ptTexts(log), IsEmpty());
}

// ---- Serial and model ---------------------------------------------------------------------------

struct SerialRow {
    const char* name;
    const char* serial;
    QByteArray expected;
};

class PTDeviceSerial : public PTDeviceSession, public WithRow<SerialRow> {};

ROW_TEST(PTDeviceSerial, is_ten_bytes) {
    loadScene({SimCameraText().withSerial(GetParam().serial)});
    const auto device = open();
    EXPECT_EQ(device->getSerial(), GetParam().expected);
}

ROWS(Rows, PTDeviceSerial,
     SerialRow{"fourteen_characters_are_cut_to_ten", "ABCDEFGHIJKLMN", "ABCDEFGHIJ"},
     SerialRow{"ten_characters_stay", "0123456789", "0123456789"},
     SerialRow{"four_characters_are_followed_by_six_zero_bytes", "WXYZ",
               QByteArray("WXYZ\0\0\0\0\0\0", 10)},
     SerialRow{"an_empty_serial_is_ten_zero_bytes", "", QByteArray(10, '\0')});

TEST_F(PTDeviceSession, a_failed_serial_query_leaves_the_serial_empty_without_a_message) {
    loadScene({SimCameraText{}});
    ToupcamSim_failCall("Toupcam_get_SerialNumber", 0, 1, E_FAIL);
    const auto device = open();
    EXPECT_TRUE(device->getSerial().isEmpty());
    EXPECT_EQ(device->deviceId(false), "Simulated-T");
    EXPECT_THAT(ptTexts(log), IsEmpty());
}

TEST_F(PTDeviceSession, reports_model_serial_flags_and_id_of_the_camera) {
    loadScene({SimCameraText().withSerial("WXYZ").withFlags(R"(["USB30", "FAN"])")});
    const auto device = open();
    EXPECT_EQ(device->getModel(), "Simulated-T");
    EXPECT_EQ(device->flags(), TOUPCAM_FLAG_USB30 | TOUPCAM_FLAG_FAN);
    EXPECT_STREQ(device->sdkCameraId(), "cam");
    EXPECT_EQ(device->deviceId(false), "Simulated-T-WXYZ");
}

TEST_F(PTDeviceSession, decodes_the_model_name_as_utf8_and_keeps_it_in_latin1) {
    loadScene({SimCameraText().withModel("\"Kamera Gr\\u00f6\\u00dfe\"")});
    const auto device = open();
    EXPECT_EQ(device->getModel(), "Kamera Gr\xf6\xdf"
                                  "e");
    EXPECT_EQ(device->model(), QString::fromUtf8("Kamera Größe"));
}

TEST_F(PTDeviceSession, a_positive_result_of_the_serial_query_is_not_a_failure) {
    loadScene({SimCameraText{}});
    ToupcamSim_failCall("Toupcam_get_SerialNumber", 0, 1, S_FALSE);
    EXPECT_EQ(open()->getSerial(), QByteArray(10, '\0')); // as the query left it
}

TEST_F(PTDeviceSession, positive_results_of_the_fixed_settings_are_not_failures) {
    loadScene({SimCameraText().withFlags(bandwidthFlags)});
    for (const char* function : {"Toupcam_put_Option", "Toupcam_put_RealTime", "Toupcam_put_Speed"})
        ToupcamSim_failCall(function, 0, 0, S_FALSE);
    open();
    EXPECT_THAT(ptTexts(log), IsEmpty());
}

TEST_F(PTDeviceSession, a_record_without_a_model_name_throws_with_the_camera_closed_again) {
    loadScene({SimCameraText().withModel("null")});
    const ToupcamDeviceV2 nameless = record();
    EXPECT_THROW(PTDevice::create(nameless), std::invalid_argument);
    EXPECT_THAT(SimJournal::calls("Toupcam_Close"), ElementsAre("Toupcam_Close(h1)"));
}

TEST_F(PTDeviceSession, sets_the_host_options_and_makes_an_idle_stream_thread) {
    loadScene({SimCameraText{}});
    const auto device = open();
    EXPECT_TRUE(device->canProcessImage());
    EXPECT_TRUE(device->hasDeviceOption(PCD::DeviceOption(0x40)));
    EXPECT_TRUE(device->hasDeviceOption(PCD::DeviceOption(0x80)));
    ASSERT_NE(device->pullThread(), nullptr);
    EXPECT_FALSE(device->pullThread()->isRunning());
    EXPECT_EQ(device->pullThread()->objectName(), u"PTStreamThread"_qs);
}

TEST_F(PTDeviceSession, linking_and_unlinking_call_nothing) {
    loadScene({SimCameraText{}});
    const auto device = open();
    SimJournal::clear();
    EXPECT_TRUE(device->tryLink());
    EXPECT_TRUE(device->tryUnlink());
    EXPECT_THAT(SimJournal::lines(), IsEmpty());
}

// ---- Failures at opening ------------------------------------------------------------------------

struct FailedSetting {
    const char* name;
    const char* function;
    int option; // -1: none
    const char* text;
    int line;
};

class PTDeviceFixedSetting : public PTDeviceSession, public WithRow<FailedSetting> {};

ROW_TEST(PTDeviceFixedSetting, that_fails_is_logged_and_not_fatal) {
    const FailedSetting& row = GetParam();
    loadScene({SimCameraText().withFlags(bandwidthFlags)});
    if (row.option >= 0)
        ToupcamSim_failOption(row.function, unsigned(row.option), 0, 1, E_FAIL);
    else
        ToupcamSim_failCall(row.function, 0, 1, E_FAIL);
    const auto device = open();
    const QList<PLogRecord> records = log.records(u"PTDevice"_qs);
    ASSERT_EQ(records.size(), 1);
    EXPECT_EQ(records[0].items,
              (QStringList{u"Failed TOUPCAM_OP:"_qs, QString::fromLatin1(row.text)}));
    EXPECT_EQ(records[0].function, u"PTDevice::PTDevice(ToupcamDeviceV2)"_qs);
    EXPECT_EQ(records[0].file, u"src/PCdPlugins/PTDevice/PTDevice.cpp"_qs);
    EXPECT_EQ(records[0].line, row.line);
    // The step after the failed one still runs.
    EXPECT_THAT(SimJournal::calls("Toupcam_get_MaxSpeed"), testing::SizeIs(1));
}

ROWS(Rows, PTDeviceFixedSetting,
     FailedSetting{"frame_rate", "Toupcam_put_Option", 17,
                   "Toupcam_put_Option(m_handle, TOUPCAM_OPTION_FRAMERATE, 0)", 141},
     FailedSetting{"multithread", "Toupcam_put_Option", 22,
                   "Toupcam_put_Option(m_handle, TOUPCAM_OPTION_MULTITHREAD, 1)", 142},
     FailedSetting{"bandwidth", "Toupcam_put_Option", 46,
                   "Toupcam_put_Option(m_handle, TOUPCAM_OPTION_BANDWIDTH, 95)", 148},
     FailedSetting{"real_time", "Toupcam_put_RealTime", -1, "Toupcam_put_RealTime(m_handle, 1)",
                   157},
     FailedSetting{"process_mode", "Toupcam_put_Option", 3,
                   "Toupcam_put_Option(m_handle, TOUPCAM_OPTION_PROCESSMODE, 0)", 163},
     FailedSetting{"byte_order", "Toupcam_put_Option", 42,
                   "Toupcam_put_Option(m_handle, TOUPCAM_OPTION_BYTEORDER, 1)", 164},
     FailedSetting{"speed", "Toupcam_put_Speed", -1,
                   "Toupcam_put_Speed(m_handle, static_cast<unsigned short>(maxSpeed))", 177});

struct MaxSpeedRow {
    const char* name;
    HRESULT result;
};

class PTDeviceMaxSpeed : public PTDeviceSession, public WithRow<MaxSpeedRow> {};

ROW_TEST(PTDeviceMaxSpeed, sets_no_speed_and_logs_nothing) {
    loadScene({SimCameraText{}});
    ToupcamSim_failCall("Toupcam_get_MaxSpeed", 0, 1, GetParam().result);
    const auto device = open();
    EXPECT_THAT(SimJournal::calls("Toupcam_put_Speed"), IsEmpty());
    EXPECT_THAT(ptTexts(log), IsEmpty());
}

ROWS(Rows, PTDeviceMaxSpeed, MaxSpeedRow{"of_zero", 0}, MaxSpeedRow{"that_fails", E_FAIL});

TEST_F(PTDeviceSession, a_camera_that_does_not_open_gives_no_device_and_the_discard_message) {
    loadScene({SimCameraText().withFlags(bandwidthFlags)});
    const ToupcamDeviceV2 closed = record();
    ToupcamSim_failCall("Toupcam_Open", 0, 1, E_FAIL);
    const std::unique_ptr<PTDevice> device(PTDevice::create(closed));
    EXPECT_EQ(device, nullptr);
    const QList<PLogRecord> records = log.records(u"PTDevice"_qs);
    // Six settings fail on the null handle; without a maximum, no speed is set.
    ASSERT_EQ(records.size(), 7);
    EXPECT_EQ(records.last().text(),
              QString::fromUtf8(
                  "PTDevice::create — Toupcam_Open returned null handle, device discarded"));
    EXPECT_EQ(records.last().line, 85);
    EXPECT_EQ(records.last().function, u"static PTDevice *PTDevice::create(ToupcamDeviceV2)"_qs);
}

TEST_F(PTDeviceSession, an_id_that_fills_its_field_is_opened_whole_and_kept_with_63_characters) {
    const std::string id(64, 'x');
    loadScene({SimCameraText().withId(id)});
    const auto device = open();
    EXPECT_THAT(SimJournal::calls("Toupcam_Open"),
                ElementsAre("Toupcam_Open(\"" + id + "\") = h1"));
    EXPECT_EQ(std::string(device->sdkCameraId()), std::string(63, 'x'));
}

// ---- Snapshot and still capture -----------------------------------------------------------------

TEST_F(PTDeviceSession, getSnapshot_returns_an_empty_image_whether_the_trigger_works_or_not) {
    loadScene({SimCameraText{}});
    const auto device = open();
    EXPECT_TRUE(device->getSnapshot().isNull()) << "no stream runs: the trigger fails";
    ASSERT_TRUE(device->tryStartStream());
    EXPECT_TRUE(device->getSnapshot().isNull()) << "accepted: the picture comes later";
    EXPECT_THAT(SimJournal::calls("Toupcam_Snap"),
                ElementsAre("Toupcam_Snap(h1, 0) = " + std::to_string(E_UNEXPECTED),
                            "Toupcam_Snap(h1, 0) = 0"));
    EXPECT_TRUE(device->tryStopStream());
}

TEST_F(PTDeviceSession, still_capture_is_at_the_current_resolution) {
    loadScene({SimCameraText().withResolutions(
        R"([{"width": 64, "height": 48}, {"width": 32, "height": 24}])")});
    const auto device = open();
    ASSERT_EQ(Toupcam_put_eSize(device->sdkHandle(), 1), S_OK);
    ASSERT_TRUE(device->tryStartStream());
    SimJournal::clear();
    EXPECT_TRUE(device->isSupportStillCapture());
    EXPECT_TRUE(device->triggerStillCapture());
    EXPECT_TRUE(device->tryStopStream());
    EXPECT_THAT(SimJournal::lines(),
                ElementsAre("Toupcam_get_eSize(h1, 1) = 0", "Toupcam_Snap(h1, 1) = 0",
                            "Toupcam_Stop(h1) = 0"));
}

namespace {

/// Counts the requests for a still.
class DeviceWithTrigger : public PTDevice {
public:
    explicit DeviceWithTrigger(const ToupcamDeviceV2& record)
        : PTDevice(record) {}
    bool triggerStillCapture() override {
        ++requests;
        return false;
    }
    int requests = 0;
};

} // namespace

TEST_F(PTDeviceSession, getSnapshot_requests_a_still_the_way_that_the_device_overrides) {
    loadScene({SimCameraText{}});
    DeviceWithTrigger device(record());
    EXPECT_TRUE(device.getSnapshot().isNull());
    EXPECT_EQ(device.requests, 1);
    EXPECT_THAT(SimJournal::calls("Toupcam_Snap"), IsEmpty());
}

TEST_F(PTDeviceSession, a_still_whose_results_are_positive_is_accepted) {
    loadScene({SimCameraText{}});
    const auto device = open();
    ToupcamSim_failCall("Toupcam_get_eSize", 0, 1, S_FALSE);
    ToupcamSim_failCall("Toupcam_Snap", 0, 1, S_FALSE);
    EXPECT_TRUE(device->triggerStillCapture());
}

TEST_F(PTDeviceSession, no_still_is_requested_when_the_resolution_is_unknown) {
    loadScene({SimCameraText{}});
    const auto device = open();
    ToupcamSim_failCall("Toupcam_get_eSize", 0, 1, E_FAIL);
    EXPECT_FALSE(device->triggerStillCapture());
    EXPECT_THAT(SimJournal::calls("Toupcam_Snap"), IsEmpty());
}

// ---- Disconnect and destruction -----------------------------------------------------------------

TEST_F(PTDeviceSession, two_reports_from_two_threads_yield_one_line_and_one_signal) {
    loadScene({SimCameraText{}});
    const auto device = open();
    QSignalSpy spy(device.get(), &PTDevice::disconnected);
    std::thread first([&] { device->handleSdkDisconnect(); });
    std::thread second([&] { device->handleSdkDisconnect(); });
    first.join();
    second.join();
    EXPECT_EQ(spy.count(), 0) << "the signal waits for the device's own thread";
    ASSERT_TRUE(waitUntil([&] { return spy.count() > 0; }));
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(spy.count(), 1);
    EXPECT_EQ(spy.at(0).at(0).toByteArray(), "Simulated-T-TESTCAM001");
    const auto records =
        ptRecords(log, u"PTDevice: SDK reported disconnect for Simulated-T-TESTCAM001"_qs);
    ASSERT_EQ(records.size(), 1);
    EXPECT_EQ(records[0].items.size(), 2);
    EXPECT_EQ(records[0].function, u"void PTDevice::handleSdkDisconnect()"_qs);
    EXPECT_EQ(records[0].line, 207);
}

TEST_F(PTDeviceSession, destroyed_with_a_disconnect_posted_emits_nothing) {
    loadScene({SimCameraText{}});
    auto device = open();
    int emitted = 0;
    QObject::connect(device.get(), &PTDevice::disconnected, [&] { ++emitted; });
    device->handleSdkDisconnect();
    device.reset();
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(emitted, 0);
}

namespace {

/// Makes its mutex public.
class DeviceWithMutex : public PTDevice {
public:
    explicit DeviceWithMutex(const ToupcamDeviceV2& record)
        : PTDevice(record) {}
    using PTDevice::deviceMutex;
};

} // namespace

TEST_F(PTDeviceSession, a_device_that_is_destroyed_closes_its_camera_and_waits_for_the_mutex) {
    loadScene({SimCameraText{}});
    auto device = std::make_unique<DeviceWithMutex>(record());
    SimJournal::clear();
    QMutex& mutex = device->deviceMutex();
    std::promise<void> held;
    std::promise<void> gone;
    bool sawClose = false;
    bool sawGone = false;
    std::thread holder([&, goneYet = gone.get_future()] {
        const QMutexLocker locker(&mutex);
        held.set_value();
        const QDeadlineTimer deadline(5000);
        while (SimJournal::calls("Toupcam_Close").empty() && !deadline.hasExpired())
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        sawClose = !deadline.hasExpired();
        // Does not happen while the device waits for the mutex.
        sawGone = goneYet.wait_for(std::chrono::milliseconds(100)) == std::future_status::ready;
    });
    held.get_future().wait();
    device.reset();
    gone.set_value();
    holder.join();
    EXPECT_TRUE(sawClose);
    EXPECT_FALSE(sawGone);
}

TEST_F(PTDeviceSession, destroyed_while_streaming_closes_the_camera_and_nothing_arrives_later) {
    loadScene({SimCameraText{}});
    auto device = open();
    ASSERT_TRUE(device->tryStartStream());
    ASSERT_TRUE(waitUntil([&] { return device->frameLedger().produced > 3; }));
    SimJournal::clear();
    device.reset();
    EXPECT_THAT(SimJournal::lines(), ElementsAre("Toupcam_Close(h1)"));
    QCoreApplication::sendPostedEvents();
}

TEST_F(PTDeviceSession,
       destroyed_with_its_stream_thread_running_and_events_queued_ends_the_thread) {
    loadScene({SimCameraText{}});
    auto device = open();
    ASSERT_EQ(Toupcam_StartPullModeWithCallback(device->sdkHandle(), cbEvent, device.get()), S_OK);
    ASSERT_TRUE(device->pullThread()->startThread().isOk());
    ASSERT_TRUE(waitUntil([&] { return device->frameLedger().produced > 3; }));
    for (unsigned code = 0; code < 20; ++code)
        device->postprocEvt(code);
    SimJournal::clear();
    device.reset();
    EXPECT_THAT(SimJournal::calls("Toupcam_Close"), ElementsAre("Toupcam_Close(h1)"));
    ASSERT_FALSE(SimJournal::lines().empty());
    EXPECT_EQ(SimJournal::lines().back(), "Toupcam_Close(h1)")
        << "nothing pulls from a closed handle";
}
