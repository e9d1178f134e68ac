// SPDX-License-Identifier: MIT
// Pipelines in a program that has neither an application of Qt nor an event loop of its own.
#include <gstreamer/GstFixture.h>

#include <gstreamer/camera/PQtLoop.h>

#include <support/NoThreads.h>

#include <QCoreApplication>

#include <csignal>
#include <cstdlib>

namespace {

class PlainProgramTest : public GstFixture {};

} // namespace

TEST_F(PlainProgramTest, frames_come_and_unplugging_is_noticed) {
    GstRun run(pipeline("on-unplug=wait"));
    run.setState(GST_STATE_PLAYING);
    ASSERT_TRUE(run.waitForBuffers(3));
    ToupcamSim_unplug("one");
    ASSERT_NE(run.elementMessage("pcdsrc-unplugged"), nullptr);
    const std::size_t before = run.buffers().size();
    ToupcamSim_plug("one");
    EXPECT_TRUE(run.waitForBuffers(before + 1));
}

TEST_F(PlainProgramTest, starts_and_stops_as_often_as_one_likes) {
    const int requested = qEnvironmentVariableIntValue("PCD_GST_CHANGES");
    const int changes = requested > 0 ? requested : 60;
    GstRun run(pipeline());
    for (int i = 0; i < changes; ++i) {
        ASSERT_NE(run.setState(GST_STATE_PLAYING), GST_STATE_CHANGE_FAILURE) << i;
        // With frames, without any, and at any moment in between.
        if (i % 3 == 0) {
            const std::size_t before = run.buffers().size();
            ASSERT_TRUE(run.waitForBuffers(before + 1)) << i;
        } else if (i % 3 == 1) {
            g_usleep(gulong(i % 40) * 100);
        }
        ASSERT_EQ(run.setState(GST_STATE_NULL), GST_STATE_CHANGE_SUCCESS) << i;
        ASSERT_EQ(ToupcamSim_openHandles(), presentCameras) << i;
    }
}

TEST_F(PlainProgramTest, two_cameras_run_side_by_side) {
    GstRun one(pipeline());
    GstRun two(pipeline("camera=1"));
    one.setState(GST_STATE_PLAYING);
    two.setState(GST_STATE_PLAYING);
    EXPECT_TRUE(one.waitForBuffers(5));
    EXPECT_TRUE(two.waitForBuffers(5));
}

TEST_F(PlainProgramTest, the_program_s_main_context_stays_its_own) {
    GstRun run(pipeline());
    run.setState(GST_STATE_READY);
    GMainContext* const context = g_main_context_default();
    EXPECT_TRUE(g_main_context_acquire(context)); // Qt's thread would own it
    g_main_context_release(context);
}

// In a process of its own, where Qt has not been started: it sets the locale of the environment.
TEST_F(PlainProgramTest, numbers_are_printed_as_before) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            setlocale(LC_ALL, "C");
            qputenv("LC_ALL", "C.UTF-8");
            PQtLoop::call([] {});
            const bool isEnvironments = std::string("C.UTF-8") == setlocale(LC_CTYPE, nullptr);
            const bool isAsBefore = std::string("C") == setlocale(LC_NUMERIC, nullptr);
            std::exit(isEnvironments && isAsBefore ? 7 : 8);
        },
        testing::ExitedWithCode(7), "");
}

TEST_F(PlainProgramTest, without_a_thread_for_qt_a_camera_is_not_opened_and_the_program_goes_on) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            auto* const run = new GstRun(pipeline());
            if (!refuseThreads())
                std::_Exit(9);
            for (int i = 0; i < 2; ++i) { // the second one does not wait for what the first began
                const bool hasFailed = run->setState(GST_STATE_READY) == GST_STATE_CHANGE_FAILURE;
                if (!hasFailed || run->error().find("did not answer") == std::string::npos)
                    std::_Exit(8);
                run->setState(GST_STATE_NULL);
            }
            sigset_t blocked;
            pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
            std::_Exit(sigismember(&blocked, SIGINT) == 0 ? 7 : 6);
        },
        testing::ExitedWithCode(7), "the system has started no thread");
}

// The child exits while frames come, without having stopped the pipeline.
TEST_F(PlainProgramTest, a_program_that_exits_while_playing_ends) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            auto* const run = new GstRun(pipeline());
            run->setState(GST_STATE_PLAYING);
            std::exit(run->waitForBuffers(3) ? 7 : 8);
        },
        testing::ExitedWithCode(7), "");
}
