// SPDX-License-Identifier: MIT
#include <toupcam/SimPictureSupport.h>

#include <cmath>

namespace {

struct TempTint {
    int temperature = -1;
    int tint = -1;
};

TempTint readTempTint(HToupcam handle) {
    TempTint result;
    EXPECT_EQ(Toupcam_get_TempTint(handle, &result.temperature, &result.tint), S_OK);
    return result;
}

/// A client's callback of one-push white balance.
class BalanceLog {
public:
    ~BalanceLog() { OpenHandles::stop(); }
    static void onDone(const int temperature, const int tint, void* context) {
        static_cast<BalanceLog*>(context)->add({temperature, tint});
    }

    /// Called in the callback.
    std::function<void()> inside;

    bool wait() {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, longestWait, [this] { return m_count > 0; });
    }
    unsigned count() const {
        const std::lock_guard lock(m_mutex);
        return m_count;
    }
    TempTint reported() const {
        const std::lock_guard lock(m_mutex);
        return m_reported;
    }
    std::thread::id thread() const {
        const std::lock_guard lock(m_mutex);
        return m_thread;
    }

private:
    void add(const TempTint& reported) {
        if (inside)
            inside();
        const std::lock_guard lock(m_mutex);
        m_reported = reported;
        m_thread = std::this_thread::get_id();
        ++m_count;
        m_changed.notify_all();
    }

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    TempTint m_reported;
    std::thread::id m_thread;
    unsigned m_count = 0;
};

// Without an offset, which would be balanced along with the light: full light gives 8 counts a
// millisecond.
SimCameraText litCamera(double kelvin) {
    SimCameraText camera;
    camera.source =
        R"({"kind": "flat", "level": 1, "lightKelvin": )" + std::to_string(kelvin) + "}";
    camera.extra = R"(, "sensor": {"fullWell": 100000, "electronsPerCount": 10, "offset": 0,
                                   "readNoise": 0, "electronsPerMs": 80},
                      "exposure": {"auto": false, "default": 20000})";
    return camera;
}

/// Largest over smallest channel mean: 1 is grey.
double cast(const PushedFrame& frame) {
    const double red = channelMean(frame, 0);
    const double green = channelMean(frame, 1);
    const double blue = channelMean(frame, 2);
    return std::max({red, green, blue}) / std::min({red, green, blue});
}

class SimWhiteBalance : public SimPictureTest {
protected:
    void requestBalance(HToupcam handle, BalanceLog& log) {
        EXPECT_EQ(Toupcam_AwbOnePush(handle, BalanceLog::onDone, &log), S_OK);
    }
};

TEST_F(SimWhiteBalance, starts_at_6503_kelvin_and_tint_1000) {
    const TempTint initial = readTempTint(open("sim-20mc-1"));
    EXPECT_EQ(initial.temperature, 6503);
    EXPECT_EQ(initial.tint, 1000);
}

TEST_F(SimWhiteBalance, pair_is_taken_as_a_whole_or_not_at_all) {
    const HToupcam handle = open("sim-20mc-1");
    for (const TempTint& refused :
         {TempTint{1999, 1200}, TempTint{15001, 1200}, TempTint{5000, 199}, TempTint{5000, 2501}}) {
        EXPECT_EQ(Toupcam_put_TempTint(handle, refused.temperature, refused.tint), E_INVALIDARG);
        EXPECT_EQ(readTempTint(handle).temperature, 6503);
        EXPECT_EQ(readTempTint(handle).tint, 1000);
    }
    for (const TempTint& taken : {TempTint{2000, 2500}, TempTint{15000, 200}}) {
        EXPECT_EQ(Toupcam_put_TempTint(handle, taken.temperature, taken.tint), S_OK);
        EXPECT_EQ(readTempTint(handle).temperature, taken.temperature);
        EXPECT_EQ(readTempTint(handle).tint, taken.tint);
    }
}

TEST_F(SimWhiteBalance, null_output_is_refused) {
    const HToupcam handle = open("sim-20mc-1");
    int value = 0;
    EXPECT_EQ(Toupcam_get_TempTint(handle, nullptr, &value), E_POINTER);
    EXPECT_EQ(Toupcam_get_TempTint(handle, &value, nullptr), E_POINTER);
}

TEST_F(SimWhiteBalance, grey_camera_has_none) {
    const HToupcam handle = open("sim-1mm-1");
    int value = 0;
    EXPECT_EQ(Toupcam_put_TempTint(handle, 5000, 1000), E_NOTIMPL);
    EXPECT_EQ(Toupcam_get_TempTint(handle, &value, &value), E_NOTIMPL);
    EXPECT_EQ(Toupcam_AwbOnePush(handle, nullptr, nullptr), E_NOTIMPL);
}

/// A setting, and its effect on a grey picture: the signs of red - green and of blue - green.
struct CastRow {
    const char* name;
    int temperature;
    int tint;
    int red;
    int blue;
};

const CastRow casts[] = {
    {"warm light taken for white makes daylight blue", 3500, 1000, -1, 1},
    {"cold light taken for white makes daylight red", 12000, 1000, 1, -1},
    {"high tint makes green", 6503, 1500, -1, -1},
    {"low tint makes magenta", 6503, 700, 1, 1},
};

class SimCast : public SimWhiteBalance, public WithSimRow<CastRow> {};

ROWS_IN(rows, SimCast, casts);

ROW_TEST(SimCast, is_seen_in_the_picture_unless_the_gains_are_off) {
    const HToupcam handle = openOnly(litCamera(6503));
    ASSERT_EQ(Toupcam_put_TempTint(handle, GetParam().temperature, GetParam().tint), S_OK);
    const PushedFrame frame = takeOne(handle);
    const double green = channelMean(frame, 1);
    EXPECT_GT(GetParam().red * (channelMean(frame, 0) - green), 10.0);
    EXPECT_GT(GetParam().blue * (channelMean(frame, 2) - green), 10.0);
    ASSERT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_WBGAIN, 0), S_OK);
    EXPECT_NEAR(cast(takeOne(handle)), 1.0, 0.01);
}

struct LampRow {
    const char* name;
    double kelvin;
};

class SimLamp : public SimWhiteBalance, public WithSimRow<LampRow> {};

ROWS(rows, SimLamp, LampRow{"candle", 2300}, LampRow{"halogen", 3200},
     LampRow{"neutral light", 6503}, LampRow{"blue sky", 12000});

ROW_TEST(SimLamp, of_the_temperature_that_is_set_is_white) {
    const HToupcam handle = openOnly(litCamera(GetParam().kelvin));
    const auto kelvin = int(GetParam().kelvin);
    ASSERT_EQ(Toupcam_put_TempTint(handle, kelvin, 1000), S_OK);
    EXPECT_NEAR(cast(takeOne(handle)), 1.0, 0.05);
}

ROW_TEST(SimLamp, one_push_finds_the_temperature_and_makes_the_picture_grey) {
    const HToupcam handle = openOnly(litCamera(GetParam().kelvin));
    FrameLog frames;
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &frames), S_OK);
    BalanceLog log;
    requestBalance(handle, log);
    ASSERT_TRUE(log.wait());
    EXPECT_EQ(Toupcam_Stop(handle), S_OK);
    EXPECT_NEAR(log.reported().temperature, GetParam().kelvin, 0.03 * GetParam().kelvin);
    EXPECT_EQ(readTempTint(handle).temperature, log.reported().temperature);
    EXPECT_EQ(readTempTint(handle).tint, log.reported().tint);
    EXPECT_NEAR(cast(takeOne(handle)), 1.0, 0.02);
}

TEST_F(SimWhiteBalance, one_push_uses_the_tint_for_what_is_not_a_temperature) {
    const PictureFolder folder;
    const HToupcam handle =
        openOnly(pictureCamera(folder.add("green.ppm", '\x80', '\xb0', '\x80')));
    FrameLog frames;
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &frames), S_OK);
    BalanceLog log;
    requestBalance(handle, log);
    ASSERT_TRUE(log.wait());
    EXPECT_EQ(Toupcam_Stop(handle), S_OK);
    EXPECT_NEAR(log.reported().temperature, 6503, 150);
    EXPECT_NEAR(log.reported().tint, 1000.0 * 0x80 / 0xb0, 15);
    EXPECT_NEAR(cast(takeOne(handle)), 1.0, 0.02);
}

TEST_F(SimWhiteBalance, one_push_of_a_balanced_picture_changes_nothing) {
    const HToupcam handle = openOnly({}); // as much red as green as blue
    FrameLog frames;
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &frames), S_OK);
    BalanceLog log;
    requestBalance(handle, log);
    ASSERT_TRUE(log.wait());
    EXPECT_EQ(log.reported().temperature, 6503);
    EXPECT_EQ(log.reported().tint, 1000);
}

TEST_F(SimWhiteBalance, one_push_needs_a_running_stream) {
    const HToupcam handle = openOnly({});
    BalanceLog log;
    EXPECT_EQ(Toupcam_AwbOnePush(handle, BalanceLog::onDone, &log), E_UNEXPECTED);
    take(handle, 5);
    EXPECT_EQ(log.count(), 0U);
}

TEST_F(SimWhiteBalance, one_push_may_have_no_callback) {
    const HToupcam handle = openOnly(litCamera(3200));
    FrameLog frames;
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &frames), S_OK);
    ASSERT_EQ(Toupcam_AwbOnePush(handle, nullptr, nullptr), S_OK);
    EXPECT_TRUE(eventually([handle] { return readTempTint(handle).temperature < 4500; }));
}

TEST_F(SimWhiteBalance, callback_comes_once_on_a_thread_of_the_sdk_and_may_call_it) {
    const HToupcam handle = openOnly({});
    FrameLog frames;
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &frames), S_OK);
    BalanceLog log;
    log.inside = [handle] {
        EXPECT_EQ(readTempTint(handle).temperature, 6503);
        EXPECT_EQ(Toupcam_put_TempTint(handle, 5000, 1000), S_OK);
        EXPECT_EQ(Toupcam_Stop(handle), E_WRONG_THREAD);
    };
    requestBalance(handle, log);
    ASSERT_TRUE(log.wait());
    EXPECT_NE(log.thread(), std::this_thread::get_id());
    const std::size_t before = frames.total();
    ASSERT_TRUE(frames.waitFor(before + 5));
    EXPECT_EQ(log.count(), 1U);
    EXPECT_EQ(readTempTint(handle).temperature, 5000);
}

TEST_F(SimWhiteBalance, camera_may_be_closed_inside_the_callback) {
    const HToupcam handle = openOnly({});
    FrameLog frames;
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &frames), S_OK);
    BalanceLog log;
    log.inside = [handle] { Toupcam_Close(handle); };
    requestBalance(handle, log);
    ASSERT_TRUE(log.wait());
    EXPECT_TRUE(eventually([] {
        const HToupcam again = Toupcam_Open("cam");
        if (again)
            OpenHandles::all().push_back(again);
        return again != nullptr;
    }));
}

TEST_F(SimWhiteBalance, request_ends_with_the_stream) {
    const HToupcam handle = openOnly({});
    ToupcamSim_holdFrames("cam", 1); // so that no frame completes it
    FrameLog frames;
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &frames), S_OK);
    BalanceLog log;
    requestBalance(handle, log);
    ASSERT_EQ(Toupcam_Stop(handle), S_OK);
    ToupcamSim_holdFrames("cam", 0);
    take(handle, 5);
    EXPECT_EQ(log.count(), 0U);
}

TEST_F(SimWhiteBalance, one_push_waits_for_frames_that_arrive) {
    const HToupcam handle = openOnly({});
    FrameLog frames;
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &frames), S_OK);
    ToupcamSim_holdFrames("cam", 1);
    const unsigned long long before = readCounts().produced;
    BalanceLog log;
    requestBalance(handle, log);
    // Two frames may have been in delivery.
    ASSERT_TRUE(eventually([before] { return readCounts().produced >= before + 20; }));
    EXPECT_EQ(log.count(), 0U);
    ToupcamSim_holdFrames("cam", 0);
    EXPECT_TRUE(log.wait());
}

TEST_F(SimWhiteBalance, one_push_works_in_pull_mode_too) {
    const HToupcam handle = openOnly(litCamera(3200));
    EventLog events;
    ASSERT_EQ(Toupcam_StartPullModeWithCallback(handle, EventLog::onEvent, &events), S_OK);
    BalanceLog log;
    requestBalance(handle, log);
    ASSERT_TRUE(log.wait());
    EXPECT_LT(log.reported().temperature, 4500);
    Toupcam_Stop(handle);
}

} // namespace
