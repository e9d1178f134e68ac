// SPDX-License-Identifier: MIT
#include <toupcam/SimTestSupport.h>

#include <atomic>
#include <future>

namespace {

using SimHotPlug = SimTest;

TEST_F(SimHotPlug, plugging_and_unplugging_are_reported) {
    CallCounter calls;
    Toupcam_HotPlug(CallCounter::onCall, &calls);
    ASSERT_EQ(ToupcamSim_unplug("sim-1mm-1"), 1);
    ASSERT_TRUE(calls.waitFor(1));
    ASSERT_EQ(ToupcamSim_plug("sim-1mm-1"), 1);
    ASSERT_TRUE(calls.waitFor(2));
    Toupcam_HotPlug(nullptr, nullptr);
    EXPECT_EQ(calls.count(), 2U);
}

TEST_F(SimHotPlug, unknown_cameras_are_neither_plugged_nor_unplugged) {
    EXPECT_EQ(ToupcamSim_unplug("no-such-camera"), 0);
    EXPECT_EQ(ToupcamSim_plug("no-such-camera"), 0);
    EXPECT_EQ(ToupcamSim_unplug(nullptr), 0);
}

using Ids = std::vector<std::string>;

/// The SDK ids of the cameras that are plugged in.
Ids findPlugged() {
    ToupcamDeviceV2 records[TOUPCAM_MAX];
    Ids ids;
    for (unsigned i = 0, count = Toupcam_EnumV2(records); i < count; ++i)
        ids.emplace_back(records[i].id);
    return ids;
}

std::string makeTwoCameras(const std::string& id, const std::string& otherId) {
    SimCameraText one;
    one.id = id;
    SimCameraText other;
    other.id = otherId;
    return makeScene({one, other});
}

TEST_F(SimHotPlug, cameras_are_plugged_and_unplugged_by_serial_number_too) {
    ASSERT_EQ(ToupcamSim_loadScene(makeTwoCameras("a", "b").c_str()), nullptr);
    CallCounter calls;
    Toupcam_HotPlug(CallCounter::onCall, &calls);
    EXPECT_EQ(ToupcamSim_setPlugged("S-b", 1), 0) << "it is plugged in";
    EXPECT_EQ(ToupcamSim_setPlugged("S-b", 0), 1);
    ASSERT_TRUE(calls.waitFor(1));
    EXPECT_EQ(findPlugged(), Ids{"a"});
    EXPECT_EQ(ToupcamSim_setPlugged("S-b", 0), 0) << "it is unplugged";
    EXPECT_EQ(ToupcamSim_setPlugged("S-b", 1), 1);
    ASSERT_TRUE(calls.waitFor(2));
    EXPECT_EQ(findPlugged(), (Ids{"a", "b"}));
    EXPECT_EQ(ToupcamSim_setPlugged("S", 0), 0) << "no such number";
    EXPECT_EQ(ToupcamSim_setPlugged(nullptr, 0), 0);
    Toupcam_HotPlug(nullptr, nullptr);
    EXPECT_EQ(calls.count(), 2U);
}

TEST_F(SimHotPlug, of_two_cameras_with_one_serial_number_the_first_in_the_scene_is_meant) {
    const std::string name = "twenty-letters-long-"; // the part of the id that the number has
    ASSERT_EQ(ToupcamSim_loadScene(makeTwoCameras(name + "1", name + "2").c_str()), nullptr);
    const std::string serial = "S-" + name;
    EXPECT_EQ(ToupcamSim_setPlugged(serial.c_str(), 0), 1);
    EXPECT_EQ(findPlugged(), Ids{name + "2"});
    EXPECT_EQ(ToupcamSim_setPlugged(serial.c_str(), 0), 1);
    EXPECT_EQ(findPlugged(), Ids());
    EXPECT_EQ(ToupcamSim_setPlugged(serial.c_str(), 1), 1);
    EXPECT_EQ(findPlugged(), Ids{name + "1"});
}

TEST_F(SimHotPlug, ten_bytes_are_enough_of_a_serial_number_that_no_camera_has) {
    ASSERT_EQ(ToupcamSim_loadScene(makeTwoCameras("12345678-long", "12345678").c_str()), nullptr);
    EXPECT_EQ(ToupcamSim_setPlugged("S-12345678", 0), 1);
    EXPECT_EQ(findPlugged(), Ids{"12345678-long"}) << "a camera has exactly this number";
    EXPECT_EQ(ToupcamSim_setPlugged("S-12345678", 0), 0) << "it is unplugged";
    EXPECT_EQ(ToupcamSim_setPlugged("S-12345678-", 0), 1);
    EXPECT_EQ(findPlugged(), Ids());
    EXPECT_EQ(ToupcamSim_setPlugged("S-1234567", 1), 0) << "nine bytes";
}

TEST_F(SimHotPlug, no_serial_number_finds_no_camera) {
    std::string scene = makeTwoCameras("a", "b");
    for (const std::string number : {"\"S-a\"", "\"S-b\""})
        scene.replace(scene.find(number), number.size(), "\"\"");
    ASSERT_EQ(ToupcamSim_loadScene(scene.c_str()), nullptr);
    EXPECT_EQ(ToupcamSim_setPlugged("", 0), 0);
    EXPECT_EQ(ToupcamSim_setPlugged(nullptr, 0), 0);
    EXPECT_EQ(findPlugged(), (Ids{"a", "b"}));
}

TEST_F(SimHotPlug, burst_runs_the_callback_once_for_each_event) {
    CallCounter calls;
    Toupcam_HotPlug(CallCounter::onCall, &calls);
    for (int i = 0; i < 5; ++i)
        ToupcamSim_fireHotPlug();
    ASSERT_TRUE(calls.waitFor(5));
    Toupcam_HotPlug(nullptr, nullptr);
    EXPECT_EQ(calls.count(), 5U);
}

TEST_F(SimHotPlug, callback_runs_on_a_thread_of_the_sdk) {
    CallCounter calls;
    std::atomic<bool> foreign{false};
    const std::thread::id here = std::this_thread::get_id();
    calls.inside = [&] { foreign = std::this_thread::get_id() != here; };
    Toupcam_HotPlug(CallCounter::onCall, &calls);
    ToupcamSim_fireHotPlug();
    ASSERT_TRUE(calls.waitFor(1));
    EXPECT_TRUE(foreign);
    Toupcam_HotPlug(nullptr, nullptr);
}

TEST_F(SimHotPlug, unregistered_callback_is_not_called) {
    CallCounter calls;
    Toupcam_HotPlug(CallCounter::onCall, &calls);
    Toupcam_HotPlug(nullptr, nullptr);
    ToupcamSim_fireHotPlug();
    CallCounter others;
    Toupcam_HotPlug(CallCounter::onCall, &others);
    ToupcamSim_fireHotPlug();
    ASSERT_TRUE(others.waitFor(1));
    Toupcam_HotPlug(nullptr, nullptr);
    EXPECT_EQ(calls.count(), 0U);
    EXPECT_EQ(others.count(), 1U);
}

TEST_F(SimHotPlug, unregistering_waits_for_the_callback_in_progress) {
    Gate gate;
    CallCounter calls;
    calls.inside = [&] { gate.pass(); };
    Toupcam_HotPlug(CallCounter::onCall, &calls);
    ToupcamSim_fireHotPlug();
    ASSERT_TRUE(gate.waitForSomebody());
    auto gone = std::async(std::launch::async, [&] {
        Toupcam_HotPlug(nullptr, nullptr);
        return calls.count(); // complete: the callback will not run again
    });
    EXPECT_EQ(gone.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    gate.open();
    ASSERT_EQ(gone.wait_for(longestWait), std::future_status::ready);
    EXPECT_EQ(gone.get(), 1U);
}

TEST_F(SimHotPlug, callback_can_unregister_itself) {
    static CallCounter calls; // static: its thread ends by itself
    calls.inside = [] { Toupcam_HotPlug(nullptr, nullptr); };
    Toupcam_HotPlug(CallCounter::onCall, &calls);
    ToupcamSim_fireHotPlug();
    ToupcamSim_fireHotPlug();
    ASSERT_TRUE(calls.waitFor(1));
    CallCounter others;
    Toupcam_HotPlug(CallCounter::onCall, &others);
    ToupcamSim_fireHotPlug();
    ASSERT_TRUE(others.waitFor(1));
    Toupcam_HotPlug(nullptr, nullptr);
    EXPECT_EQ(calls.count(), 1U);
}

TEST_F(SimHotPlug, callback_can_enumerate_and_unplug) {
    CallCounter calls;
    std::atomic<unsigned> found{99};
    calls.inside = [&] {
        ToupcamDeviceV2 records[TOUPCAM_MAX];
        found = Toupcam_EnumV2(records);
        ToupcamSim_unplug("sim-1mm-1");
    };
    Toupcam_HotPlug(CallCounter::onCall, &calls);
    ToupcamSim_fireHotPlug();
    ASSERT_TRUE(calls.waitFor(2)); // the second one is for the unplugging during the first
    EXPECT_EQ(found, 1U);
    Toupcam_HotPlug(nullptr, nullptr);
}

struct LossRow {
    const char* name;
    bool pull;
};

class SimLossOrder : public SimTest, public WithSimRow<LossRow> {};

ROWS(modes, SimLossOrder, LossRow{"push mode", false}, LossRow{"pull mode", true});

ROW_TEST(SimLossOrder, stream_reports_the_loss_before_the_hot_plug_callback_runs) {
    const HToupcam handle = openOnly(SimCameraText());
    FrameLog frames(0);
    EventLog events;
    std::atomic<bool> reportedBefore{false};
    CallCounter calls;
    calls.inside = [&] {
        reportedBefore = frames.losses() == 1 || events.count(TOUPCAM_EVENT_DISCONNECTED) == 1;
    };
    Toupcam_HotPlug(CallCounter::onCall, &calls);
    if (GetParam().pull)
        ASSERT_EQ(Toupcam_StartPullModeWithCallback(handle, EventLog::onEvent, &events), S_OK);
    else
        ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &frames), S_OK);
    ASSERT_TRUE(eventually([] { return readCounts().delivered > 0; }));
    ASSERT_EQ(ToupcamSim_unplug("cam"), 1);
    ASSERT_TRUE(calls.waitFor(1));
    EXPECT_TRUE(reportedBefore);
    Toupcam_HotPlug(nullptr, nullptr);
    Toupcam_Close(handle);
    EXPECT_EQ(calls.count(), 1U);
}

TEST_F(SimHotPlug, unplugging_during_a_callback_in_progress_is_reported_after_it) {
    const HToupcam handle = openOnly(SimCameraText());
    Gate gate;
    FrameLog frames(0);
    frames.inside = [&] { gate.pass(); };
    CallCounter calls;
    Toupcam_HotPlug(CallCounter::onCall, &calls);
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &frames), S_OK);
    ASSERT_TRUE(gate.waitForSomebody());
    ASSERT_EQ(ToupcamSim_unplug("cam"), 1); // returns although the callback is blocked
    EXPECT_EQ(frames.losses(), 0U);
    gate.open();
    ASSERT_TRUE(frames.waitForLoss());
    ASSERT_TRUE(calls.waitFor(1));
    Toupcam_HotPlug(nullptr, nullptr);
    Toupcam_Close(handle);
}

TEST_F(SimHotPlug, unplugging_is_reported_even_when_the_stream_is_stopped_at_the_same_time) {
    for (int i = 0; i < 50; ++i) {
        const HToupcam handle = openOnly(SimCameraText());
        FrameLog frames(0);
        CallCounter calls;
        ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &frames), S_OK);
        Toupcam_HotPlug(CallCounter::onCall, &calls);
        std::thread stopper([handle] { Toupcam_Stop(handle); });
        ASSERT_EQ(ToupcamSim_unplug("cam"), 1);
        ASSERT_TRUE(calls.waitFor(1));
        stopper.join();
        Toupcam_HotPlug(nullptr, nullptr);
        Toupcam_Close(handle);
    }
}

} // namespace
