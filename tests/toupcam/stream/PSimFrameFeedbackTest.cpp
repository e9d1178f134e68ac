// SPDX-License-Identifier: MIT
#include <toupcam/stream/StreamParts.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

void noteExposure(void* steps) {
    static_cast<StreamSteps*>(steps)->push_back("exposure callback");
}

void noteBalance(int /*temperature*/, int /*tint*/, void* steps) {
    static_cast<StreamSteps*>(steps)->push_back("balanced");
}

class PSimFrameFeedbackTest : public ::testing::Test {
protected:
    void apply(double mean) { m_parts.feedback.apply({mean, mean, mean}, m_delivery); }

    StreamParts m_parts;
    FakeDelivery m_delivery{m_parts.steps, 0};
};

TEST_F(PSimFrameFeedbackTest, a_dark_frame_raises_the_exposure_and_reports_it_both_ways) {
    m_parts.source->exposed = true;
    m_parts.feedback.setExposureCallback(noteExposure, &m_parts.steps);
    const unsigned before = m_parts.settings->exposure().microseconds;
    apply(20.0);
    EXPECT_GT(m_parts.settings->exposure().microseconds, before);
    EXPECT_THAT(m_parts.steps, ElementsAre("exposure changed", "exposure callback"));
}

TEST_F(PSimFrameFeedbackTest, a_frame_on_target_changes_and_reports_nothing) {
    m_parts.source->exposed = true;
    m_parts.feedback.setExposureCallback(noteExposure, &m_parts.steps);
    apply(m_parts.settings->target());
    EXPECT_THAT(m_parts.steps, IsEmpty());
}

TEST_F(PSimFrameFeedbackTest, a_source_without_exposure_is_left_alone) {
    m_parts.feedback.setExposureCallback(noteExposure, &m_parts.steps);
    apply(20.0);
    EXPECT_THAT(m_parts.steps, IsEmpty());
}

TEST_F(PSimFrameFeedbackTest, white_balance_uses_the_second_frame_once) {
    m_parts.feedback.requestBalance({noteBalance, &m_parts.steps});
    apply(100.0);
    EXPECT_THAT(m_parts.steps, IsEmpty());
    apply(100.0);
    apply(100.0);
    apply(100.0);
    EXPECT_THAT(m_parts.steps, ElementsAre("balanced"));
}

TEST_F(PSimFrameFeedbackTest, a_dropped_request_is_never_completed) {
    m_parts.feedback.requestBalance({noteBalance, &m_parts.steps});
    m_parts.feedback.dropBalance();
    apply(100.0);
    apply(100.0);
    EXPECT_THAT(m_parts.steps, IsEmpty());
}

// A callback may call any function of the SDK, including one that takes the feedback's own lock.
void unsetCallback(void* parts) {
    static_cast<StreamParts*>(parts)->feedback.setExposureCallback(nullptr, nullptr);
    static_cast<StreamParts*>(parts)->steps.push_back("unset");
}

TEST_F(PSimFrameFeedbackTest, the_exposure_callback_may_unset_itself) {
    m_parts.source->exposed = true;
    m_parts.feedback.setExposureCallback(unsetCallback, &m_parts);
    apply(20.0);
    apply(20.0);
    EXPECT_THAT(m_parts.steps, ElementsAre("exposure changed", "unset", "exposure changed"));
}

} // namespace
