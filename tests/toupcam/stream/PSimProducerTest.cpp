// SPDX-License-Identifier: MIT
#include <toupcam/stream/StreamParts.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using ::testing::ElementsAre;

// Runs the producer on this thread until the delivery has received as many frames as it is ready
// for.
class PSimProducerTest : public ::testing::Test {
protected:
    void run(int frames) {
        const auto delivery = std::make_shared<FakeDelivery>(m_parts.steps, frames);
        delivery->afterFrame = [this, frames, seen = 0]() mutable {
            if (++seen == frames)
                m_parts.schedule.requestStop();
        };
        m_parts.schedule.begin(delivery);
        if (m_beforeRun)
            m_beforeRun();
        m_parts.producer.run(*delivery);
    }

    StreamParts m_parts;
    std::function<void()> m_beforeRun;
};

TEST_F(PSimProducerTest, a_frame_is_observed_taken_delivered_and_done_in_this_order) {
    run(2);
    EXPECT_THAT(m_parts.steps, ElementsAre("taken 1/0", "take 0 at 0", "frame 0", "done 1",
                                           "taken 2/0", "take 1 at 0", "frame 1", "done 2"));
    EXPECT_EQ(m_parts.schedule.counts().delivered, 2U);
}

TEST_F(PSimProducerTest, what_frames_need_is_prepared_once_and_before_the_first_of_them) {
    m_parts.source->whilePreparing = [this] { m_parts.steps.push_back("prepare"); };
    run(2);
    EXPECT_THAT(m_parts.steps,
                ElementsAre("prepare", "taken 1/0", "take 0 at 0", "frame 0", "done 1", "taken 2/0",
                            "take 1 at 0", "frame 1", "done 2"));
}

TEST_F(PSimProducerTest, frames_are_taken_even_if_there_was_no_memory_to_prepare_them) {
    m_parts.source->whilePreparing = [] { throw std::bad_alloc(); };
    run(1);
    EXPECT_THAT(m_parts.steps, ElementsAre("taken 1/0", "take 0 at 0", "frame 0", "done 1"));
}

TEST_F(PSimProducerTest, a_frame_that_the_observer_loses_is_counted_but_never_taken) {
    m_parts.observer->lost = 1;
    run(1);
    EXPECT_THAT(m_parts.steps, ElementsAre("taken 1/0", "done 1", "taken 2/0", "take 1 at 0",
                                           "frame 1", "done 2"));
    EXPECT_EQ(m_parts.schedule.counts().produced, 2U);
    EXPECT_EQ(m_parts.schedule.counts().delivered, 1U);
}

TEST_F(PSimProducerTest, a_frame_that_is_stopped_while_it_is_taken_is_not_delivered) {
    m_parts.source->whileTaking = [this] { m_parts.schedule.requestStop(); };
    run(1);
    EXPECT_THAT(m_parts.steps, ElementsAre("taken 1/0", "take 0 at 0", "done 1"));
    EXPECT_EQ(m_parts.schedule.counts().delivered, 0U);
}

TEST_F(PSimProducerTest, a_picture_for_which_there_is_no_memory_is_lost_in_the_camera) {
    m_beforeRun = [this] { EXPECT_EQ(m_parts.schedule.requestStill(1), S_OK); };
    m_parts.source->whileTaking = [takes = 0]() mutable {
        if (++takes <= 2) // the still and the first frame
            throw std::bad_alloc();
    };
    testing::internal::CaptureStderr();
    run(1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "simulated SDK: no memory for a picture, which is lost\n");
    EXPECT_THAT(m_parts.steps, ElementsAre("take 0 at 1", "taken 1/0", "take 0 at 0", "done 1",
                                           "taken 2/0", "take 1 at 0", "frame 1", "done 2"));
}

TEST_F(PSimProducerTest, a_still_is_taken_at_its_own_resolution_and_not_observed) {
    m_beforeRun = [this] { EXPECT_EQ(m_parts.schedule.requestStill(1), S_OK); };
    run(1);
    EXPECT_THAT(m_parts.steps, ElementsAre("take 0 at 1", "still", "taken 1/0", "take 0 at 0",
                                           "frame 0", "done 1"));
}

TEST_F(PSimProducerTest, a_held_camera_loses_its_stills) {
    m_parts.link->held = true;
    m_beforeRun = [this] {
        EXPECT_EQ(m_parts.schedule.requestStill(1), S_OK);
        // After the still: the loss ends the wait, which the held camera would never do.
        m_parts.source->unpaced = false;
        m_parts.observer->inFrameDone = [this] { m_parts.schedule.requestStop(); };
    };
    run(1);
    EXPECT_THAT(m_parts.steps, ElementsAre("taken 1/0", "done 1"));
}

TEST_F(PSimProducerTest, a_loss_is_reported_and_then_followed_up) {
    m_beforeRun = [this] {
        EXPECT_TRUE(m_parts.schedule.requestLoss([this] {
            m_parts.steps.push_back("followed up");
            m_parts.schedule.requestStop();
        }));
    };
    run(1);
    EXPECT_THAT(m_parts.steps, ElementsAre("lost", "followed up"));
}

TEST_F(PSimProducerTest, a_loss_that_a_stop_overtakes_is_followed_up_without_a_report) {
    m_beforeRun = [this] {
        EXPECT_TRUE(
            m_parts.schedule.requestLoss([this] { m_parts.steps.push_back("followed up"); }));
        m_parts.schedule.requestStop();
    };
    run(1);
    EXPECT_THAT(m_parts.steps, ElementsAre("followed up"));
}

TEST_F(PSimProducerTest, it_is_observing_between_two_frames_only) {
    std::vector<bool> observing;
    m_parts.source->whileTaking = [&] { observing.push_back(m_parts.producer.isObserving()); };
    m_parts.observer->inFrameDone = [&] { observing.push_back(m_parts.producer.isObserving()); };
    run(1);
    EXPECT_THAT(observing, ElementsAre(false, true));
    EXPECT_FALSE(m_parts.producer.isObserving());
}

} // namespace
