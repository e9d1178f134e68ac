// SPDX-License-Identifier: MIT
#include <toupcam/SimTestSupport.h>

#include <gmock/gmock.h>

#include <atomic>
#include <limits>
#include <utility>

namespace {

using testing::Contains;
using testing::ElementsAre;

/// What the hook of the current test is called with, and what it answers. The hook runs on threads
/// of the simulator too.
struct HookScript {
    std::mutex mutex; // guards all below; not held while the hook acts on the simulator
    std::vector<std::pair<std::string, int>> moments;
    std::string faulty; ///< a call that gets this answer
    int answer = TOUPCAMSIM_PASS;
    HRESULT result = E_FAIL;
    std::function<void()> action; ///< just before that call
};

HookScript& hookScript() {
    static HookScript script;
    return script;
}

int runHook(const char* name, int moment, HRESULT* result) {
    HookScript& script = hookScript();
    std::function<void()> action;
    int answer = TOUPCAMSIM_PASS;
    {
        const std::lock_guard lock(script.mutex);
        script.moments.emplace_back(name, moment);
        if (script.faulty == name && moment == TOUPCAMSIM_BEFORE_CALL) {
            answer = script.answer;
            *result = script.result;
            action = script.action;
        }
    }
    if (action)
        action();
    return answer;
}

class SimHook : public SimTest {
protected:
    SimHook() {
        hookScript().moments.clear();
        hookScript().faulty.clear();
        hookScript().action = {};
    }
    ~SimHook() override { ToupcamSim_setHook(nullptr); }

    static void answer(const std::string& function, int answer, HRESULT result) {
        hookScript().faulty = function;
        hookScript().answer = answer;
        hookScript().result = result;
        ToupcamSim_setHook(runHook);
    }
    static std::vector<std::pair<std::string, int>> moments() {
        const std::lock_guard lock(hookScript().mutex);
        return hookScript().moments;
    }
    static auto before(const char* callback) {
        return std::pair<std::string, int>(callback, TOUPCAMSIM_BEFORE_CALLBACK);
    }
};

TEST_F(SimHook, is_called_before_and_after_every_call_until_it_is_removed) {
    const HToupcam handle = openOnly(SimCameraText());
    ToupcamSim_setHook(runHook);
    int hue = 0;
    Toupcam_get_Hue(handle, &hue);
    Toupcam_get_MaxSpeed(nullptr);
    ToupcamSim_setHook(nullptr);
    Toupcam_get_Hue(handle, &hue);
    EXPECT_THAT(moments(), ElementsAre(std::pair("Toupcam_get_Hue", TOUPCAMSIM_BEFORE_CALL),
                                       std::pair("Toupcam_get_Hue", TOUPCAMSIM_AFTER_CALL),
                                       std::pair("Toupcam_get_MaxSpeed", TOUPCAMSIM_BEFORE_CALL),
                                       std::pair("Toupcam_get_MaxSpeed", TOUPCAMSIM_AFTER_CALL)));
}

TEST_F(SimHook, a_call_that_it_fails_has_no_effect) {
    const HToupcam handle = openOnly(SimCameraText());
    answer("Toupcam_put_Hue", TOUPCAMSIM_FAIL, E_UNEXPECTED);
    EXPECT_EQ(Toupcam_put_Hue(handle, 7), E_UNEXPECTED);
    int hue = -1;
    EXPECT_EQ(Toupcam_get_Hue(handle, &hue), S_OK);
    EXPECT_EQ(hue, 0);
}

TEST_F(SimHook, an_absurd_success_spoils_every_number_that_the_call_writes) {
    const HToupcam handle = openOnly(SimCameraText());
    answer("Toupcam_get_FinalSize", TOUPCAMSIM_ABSURD, std::numeric_limits<int>::min());
    int width = 1;
    int height = 1;
    EXPECT_EQ(Toupcam_get_FinalSize(handle, &width, &height), S_OK);
    EXPECT_EQ(width, std::numeric_limits<int>::min());
    EXPECT_EQ(height, std::numeric_limits<int>::min());
    EXPECT_EQ(Toupcam_get_FinalSize(handle, nullptr, &height), S_OK) << "writes what it can";
}

TEST_F(SimHook, an_absurd_success_of_a_count_is_that_number) {
    const HToupcam handle = openOnly(SimCameraText());
    answer("Toupcam_get_MaxSpeed", TOUPCAMSIM_ABSURD, 70000);
    EXPECT_EQ(Toupcam_get_MaxSpeed(handle), 70000);
}

TEST_F(SimHook, an_absurd_success_of_a_pull_announces_an_absurd_frame) {
    const HToupcam handle = openOnly(SimCameraText());
    answer("Toupcam_PullImageV2", TOUPCAMSIM_ABSURD, -1);
    ToupcamFrameInfoV2 info{};
    EXPECT_EQ(Toupcam_PullImageV2(handle, nullptr, 32, &info), S_OK);
    EXPECT_EQ(info.width, std::numeric_limits<unsigned>::max());
}

TEST_F(SimHook, an_absurd_serial_number_has_no_end) {
    const HToupcam handle = openOnly(SimCameraText());
    answer("Toupcam_get_SerialNumber", TOUPCAMSIM_ABSURD, 'x');
    char serial[32] = {};
    EXPECT_EQ(Toupcam_get_SerialNumber(handle, serial), 'x');
    EXPECT_EQ(std::string(serial, sizeof serial), std::string(32, 'x'));
}

TEST_F(SimHook, an_absurd_enumeration_lists_cameras_without_writing_them) {
    answer("Toupcam_EnumV2", TOUPCAMSIM_ABSURD, 5);
    ToupcamDeviceV2 records[TOUPCAM_MAX] = {};
    EXPECT_EQ(Toupcam_EnumV2(records), 5U);
    EXPECT_EQ(records[0].model, nullptr);
    EXPECT_EQ(Toupcam_EnumV2(nullptr), 5U);
}

TEST_F(SimHook, an_absurd_handle_is_none) {
    answer("Toupcam_Open", TOUPCAMSIM_ABSURD, 1);
    const HToupcam handle = Toupcam_Open("sim-1mm-1");
    ASSERT_NE(handle, nullptr);
    EXPECT_EQ(Toupcam_get_MaxSpeed(handle), E_INVALIDARG);
    EXPECT_EQ(ToupcamSim_openHandles(), 0U);
}

TEST_F(SimHook, may_unplug_the_camera_just_before_the_call) {
    const HToupcam handle = openOnly(SimCameraText());
    hookScript().action = [] { ToupcamSim_unplug("cam"); };
    answer("Toupcam_get_Hue", TOUPCAMSIM_PASS, S_OK);
    int hue = 0;
    EXPECT_EQ(Toupcam_get_Hue(handle, &hue), E_GEN_FAILURE);
}

TEST_F(SimHook, is_called_before_frames_and_before_the_loss_of_the_camera) {
    const HToupcam handle = openOnly(SimCameraText());
    ToupcamSim_setHook(runHook);
    FrameLog frames;
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &frames), S_OK);
    ASSERT_TRUE(frames.waitFor(1));
    EXPECT_THAT(moments(), Contains(before("data")));
    ToupcamSim_unplug("cam");
    ASSERT_TRUE(frames.waitForLoss());
    EXPECT_THAT(moments(), Contains(before("loss")));
}

TEST_F(SimHook, is_called_before_buffers_that_a_test_pushes) {
    const HToupcam handle = openOnly(SimCameraText());
    ASSERT_EQ(Toupcam_StartPushMode(handle, ignoreData, nullptr), S_OK);
    ToupcamSim_holdFrames("cam", 1);
    ToupcamSim_setHook(runHook);
    ASSERT_EQ(ToupcamSim_pushRaw("cam", nullptr, nullptr, 0), 1);
    EXPECT_THAT(moments(), Contains(before("loss")));
}

TEST_F(SimHook, is_called_before_events_and_the_hot_plug_callback) {
    const HToupcam handle = openOnly(SimCameraText());
    EventLog events;
    CallCounter plugged;
    Toupcam_HotPlug(CallCounter::onCall, &plugged);
    ASSERT_EQ(Toupcam_StartPullModeWithCallback(handle, EventLog::onEvent, &events), S_OK);
    ToupcamSim_setHook(runHook);
    ASSERT_EQ(ToupcamSim_fireEvent("cam", TOUPCAM_EVENT_ERROR), 1);
    ToupcamSim_fireHotPlug();
    ASSERT_TRUE(plugged.waitFor(1));
    EXPECT_THAT(moments(), Contains(before("event")));
    EXPECT_THAT(moments(), Contains(before("hotplug")));
}

TEST_F(SimHook, is_called_before_the_answer_of_a_white_balance) {
    const HToupcam handle = openOnly(SimCameraText());
    std::atomic<bool> answered{false};
    const auto onBalance = [](int, int, void* context) {
        static_cast<std::atomic<bool>*>(context)->store(true);
    };
    ToupcamSim_setHook(runHook);
    ASSERT_EQ(Toupcam_StartPushMode(handle, ignoreData, nullptr), S_OK);
    ASSERT_EQ(Toupcam_AwbOnePush(handle, onBalance, &answered), S_OK);
    ASSERT_TRUE(eventually([&] { return answered.load(); }));
    EXPECT_THAT(moments(), Contains(before("temptint")));
    Toupcam_Stop(handle);
}

TEST_F(SimHook, is_called_before_a_report_of_automatic_exposure) {
    SimCameraText camera;
    camera.source = R"({"kind": "flat"})";
    const HToupcam handle = openOnly(camera);
    CallCounter changes;
    ASSERT_EQ(Toupcam_put_ExpoCallback(handle, CallCounter::onCall, &changes), S_OK);
    ToupcamSim_setHook(runHook);
    ASSERT_EQ(Toupcam_StartPushMode(handle, ignoreData, nullptr), S_OK);
    ASSERT_TRUE(changes.waitFor(1));
    EXPECT_THAT(moments(), Contains(before("exposure")));
}

TEST_F(SimHook, handles_are_counted_until_they_are_closed) {
    const HToupcam handle = openOnly(SimCameraText());
    EXPECT_EQ(ToupcamSim_openHandles(), 1U);
    Toupcam_Close(handle);
    EXPECT_EQ(ToupcamSim_openHandles(), 0U);
}

} // namespace
