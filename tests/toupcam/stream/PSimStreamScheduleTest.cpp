// SPDX-License-Identifier: MIT
#include <toupcam/stream/StreamParts.h>

#include <gtest/gtest.h>

#include <thread>

namespace {

using Schedule = PSimStreamSchedule;

class PSimStreamScheduleTest : public ::testing::Test {
protected:
    void begin(int readyFor) {
        m_schedule.begin(std::make_shared<FakeDelivery>(m_parts.steps, readyFor));
    }

    // The kind of the next piece of work, which must be available already.
    std::string next() {
        const auto work = m_schedule.next();
        if (!work)
            return "end";
        constexpr const char* kinds[] = {"loss", "job", "still", "frame"};
        return kinds[work->index()];
    }

    StreamParts m_parts;
    PSimStreamSchedule& m_schedule = m_parts.schedule;
};

TEST_F(PSimStreamScheduleTest, nothing_can_be_requested_before_the_beginning_and_after_the_end) {
    const auto refusesAll = [this] {
        EXPECT_FALSE(m_schedule.isOpen());
        EXPECT_EQ(m_schedule.requestStill(0), E_UNEXPECTED);
        EXPECT_EQ(m_schedule.trigger(1), E_UNEXPECTED);
        EXPECT_FALSE(m_schedule.runBetweenFrames([] { return true; }));
        EXPECT_FALSE(m_schedule.requestLoss([] {}));
    };
    refusesAll();
    begin(0);
    EXPECT_TRUE(m_schedule.isOpen());
    EXPECT_FALSE(m_schedule.end());
    refusesAll();
}

TEST_F(PSimStreamScheduleTest, a_still_comes_before_a_frame_that_is_due) {
    begin(1);
    ASSERT_EQ(m_schedule.requestStill(1), S_OK);
    EXPECT_EQ(next(), "still");
    EXPECT_EQ(next(), "frame");
}

TEST_F(PSimStreamScheduleTest, a_loss_comes_first_and_drops_stills_and_frames) {
    begin(1);
    ASSERT_EQ(m_schedule.requestStill(0), S_OK);
    ASSERT_TRUE(m_schedule.requestLoss([] {}));
    EXPECT_FALSE(m_schedule.requestLoss([] {})) << "it is known already";
    EXPECT_EQ(next(), "loss");
    m_schedule.requestStop();
    EXPECT_EQ(next(), "end");
}

TEST_F(PSimStreamScheduleTest, stills_dropped_by_a_loss_leave_their_places) {
    begin(0);
    while (m_schedule.requestStill(0) == S_OK)
        continue;
    ASSERT_EQ(m_schedule.requestStill(0), E_PENDING);
    ASSERT_TRUE(m_schedule.requestLoss([] {}));
    EXPECT_EQ(next(), "loss");
    EXPECT_EQ(m_schedule.requestStill(0), S_OK);
}

TEST_F(PSimStreamScheduleTest, a_still_that_waits_at_the_end_is_not_taken_by_the_next_stream) {
    begin(0);
    ASSERT_EQ(m_schedule.requestStill(0), S_OK);
    m_schedule.end();
    begin(1);
    EXPECT_EQ(next(), "frame");
}

TEST_F(PSimStreamScheduleTest, a_stop_comes_before_everything_else) {
    begin(1);
    ASSERT_EQ(m_schedule.requestStill(0), S_OK);
    m_schedule.requestStop();
    EXPECT_FALSE(m_schedule.isOpen());
    EXPECT_EQ(m_schedule.requestStill(0), E_UNEXPECTED);
    EXPECT_EQ(next(), "end");
}

TEST_F(PSimStreamScheduleTest, sixteen_stills_may_wait) {
    begin(0);
    for (int i = 0; i < 16; ++i)
        ASSERT_EQ(m_schedule.requestStill(0), S_OK) << i;
    EXPECT_EQ(m_schedule.requestStill(0), E_PENDING);
    EXPECT_EQ(next(), "still");
    EXPECT_EQ(m_schedule.requestStill(0), S_OK);
}

TEST_F(PSimStreamScheduleTest, frames_are_numbered_and_a_still_has_the_number_of_the_next_one) {
    begin(10);
    for (std::uint64_t number = 0; number < 2; ++number) {
        const auto work = m_schedule.next();
        ASSERT_TRUE(work && std::holds_alternative<Schedule::Frame>(*work));
        EXPECT_EQ(std::get<Schedule::Frame>(*work).number, number);
    }
    ASSERT_EQ(m_schedule.requestStill(1), S_OK);
    const auto work = m_schedule.next();
    ASSERT_TRUE(work && std::holds_alternative<Schedule::Still>(*work));
    EXPECT_EQ(std::get<Schedule::Still>(*work).number, 2U);
    EXPECT_EQ(std::get<Schedule::Still>(*work).resolution, 1U);
}

TEST_F(PSimStreamScheduleTest, a_job_waits_for_the_producing_thread_and_returns_its_result) {
    begin(0);
    bool result = false;
    std::thread caller([&] { result = m_schedule.runBetweenFrames([] { return true; }); });
    auto work = m_schedule.next();
    auto* const job = work ? std::get_if<Schedule::Job>(&*work) : nullptr;
    EXPECT_TRUE(job);
    if (job)
        job->result.set_value(job->work());
    m_schedule.end();
    caller.join();
    EXPECT_TRUE(result);
}

TEST_F(PSimStreamScheduleTest, a_job_is_never_called_after_the_end_and_its_caller_returns) {
    // The end comes before or after the request by chance: the result must be the same.
    for (int i = 0; i < 50; ++i) {
        begin(0);
        bool called = false;
        bool result = true;
        std::atomic<bool> started{false};
        std::thread caller([&] {
            started = true;
            result = m_schedule.runBetweenFrames([&called] { return called = true; });
        });
        while (!started)
            std::this_thread::yield();
        m_schedule.end();
        caller.join();
        ASSERT_FALSE(result);
        ASSERT_FALSE(called);
    }
}

TEST_F(PSimStreamScheduleTest, end_hands_out_what_was_to_follow_an_unreported_loss) {
    begin(0);
    bool followed = false;
    ASSERT_TRUE(m_schedule.requestLoss([&followed] { followed = true; }));
    m_schedule.requestStop();
    EXPECT_EQ(next(), "end");
    const std::function<void()> afterwards = m_schedule.end();
    ASSERT_TRUE(afterwards);
    afterwards();
    EXPECT_TRUE(followed);
}

TEST_F(PSimStreamScheduleTest, a_frame_counts_as_delivered_unless_stopped_or_lost_meanwhile) {
    begin(10);
    EXPECT_EQ(next(), "frame");
    EXPECT_TRUE(m_schedule.deliver());
    EXPECT_EQ(next(), "frame");
    ASSERT_TRUE(m_schedule.requestLoss([] {}));
    EXPECT_FALSE(m_schedule.deliver());
    EXPECT_EQ(m_schedule.counts().produced, 2U);
    EXPECT_EQ(m_schedule.counts().delivered, 1U);
    begin(10);
    m_schedule.requestStop();
    EXPECT_FALSE(m_schedule.deliver());
    EXPECT_EQ(m_schedule.counts().produced, 0U) << "of the newest stream";
}

TEST_F(PSimStreamScheduleTest, a_triggered_frame_says_so_and_comes_without_a_ready_delivery) {
    m_parts.source->unpaced = false;
    ASSERT_EQ(m_parts.settings->setOption(TOUPCAM_OPTION_TRIGGER, 1), S_OK);
    begin(0);
    ASSERT_EQ(m_schedule.trigger(1), S_OK);
    const auto work = m_schedule.next();
    ASSERT_TRUE(work && std::holds_alternative<Schedule::Frame>(*work));
    EXPECT_TRUE(std::get<Schedule::Frame>(*work).triggered);
}

} // namespace
