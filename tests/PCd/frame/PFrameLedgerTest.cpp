// SPDX-License-Identifier: MIT
#include <PCd/frame/PFrameLedger.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <gtest/gtest.h>

#include <set>

TEST(PFrameLedger, is_balanced_when_it_is_empty) {
    EXPECT_TRUE(PFrameLedger().isBalanced());
}

TEST(PFrameLedger, is_balanced_when_every_frame_has_its_outcome_or_waits) {
    PFrameLedger ledger;
    ledger.produced = 6;
    ledger.waiting = 1;
    ledger.outcomes[std::size_t(PFrameOutcome::Delivered)] = 3;
    ledger.outcomes[std::size_t(PFrameOutcome::NotRequested)] = 2;
    EXPECT_TRUE(ledger.isBalanced());
}

TEST(PFrameLedger, is_not_balanced_when_a_frame_has_no_outcome) {
    PFrameLedger ledger;
    ledger.produced = 2;
    ledger.outcomes[std::size_t(PFrameOutcome::Delivered)] = 1;
    EXPECT_FALSE(ledger.isBalanced());
}

TEST(PFrameLedger, is_not_balanced_when_a_frame_has_two_outcomes) {
    PFrameLedger ledger;
    ledger.produced = 1;
    ledger.outcomes[std::size_t(PFrameOutcome::Delivered)] = 1;
    ledger.outcomes[std::size_t(PFrameOutcome::FailedInWriter)] = 1;
    EXPECT_FALSE(ledger.isBalanced());
}

TEST(PFrameLedger, is_balanced_without_the_snapshots_which_are_counted_separately) {
    PFrameLedger ledger;
    ledger.snapshots = 4;
    EXPECT_TRUE(ledger.isBalanced());
}

namespace {

PFrameLedger makeLedger(quint64 delivered, quint64 lost, quint64 waiting) {
    PFrameLedger ledger;
    ledger.produced = delivered + lost + waiting;
    ledger.waiting = waiting;
    ledger.outcomes[std::size_t(PFrameOutcome::Delivered)] = delivered;
    ledger.outcomes[std::size_t(PFrameOutcome::LostInCamera)] = lost;
    return ledger;
}

} // namespace

TEST(PFrameLedger, since_a_start_counts_what_came_after_it) {
    PFrameLedger start = makeLedger(10, 2, 0);
    PFrameLedger now = makeLedger(15, 3, 1);
    start.snapshots = 4;
    now.snapshots = 6;
    const PFrameLedger span = now.since(start);
    EXPECT_EQ(span.produced, 7u);
    EXPECT_EQ(span.count(PFrameOutcome::Delivered), 5u);
    EXPECT_EQ(span.count(PFrameOutcome::LostInCamera), 1u);
    EXPECT_EQ(span.waiting, 1u);
    EXPECT_EQ(span.snapshots, 2u);
    EXPECT_TRUE(span.isBalanced());
}

TEST(PFrameLedger, since_a_start_counts_what_was_waiting_then_as_produced) {
    const PFrameLedger span = makeLedger(15, 0, 0).since(makeLedger(10, 0, 3));
    EXPECT_EQ(span.produced, 5u); // 3 were waiting, 2 are new
    EXPECT_EQ(span.count(PFrameOutcome::Delivered), 5u);
    EXPECT_TRUE(span.isBalanced());
}

TEST(PFrameLedger, since_a_start_counts_what_has_waited_all_the_time_as_waiting) {
    const PFrameLedger span = makeLedger(10, 1, 3).since(makeLedger(10, 0, 3));
    EXPECT_EQ(span.produced, 4u);
    EXPECT_EQ(span.waiting, 3u);
    EXPECT_TRUE(span.isBalanced());
}

TEST(PFrameLedger, since_a_start_is_not_balanced_if_the_ledger_now_is_not) {
    PFrameLedger now = makeLedger(15, 0, 0);
    ++now.produced;
    EXPECT_FALSE(now.since(makeLedger(10, 0, 3)).isBalanced());
}

TEST(PFrameLedger, since_an_empty_start_is_the_ledger_itself) {
    const PFrameLedger now = makeLedger(15, 2, 1);
    const PFrameLedger span = now.since({});
    EXPECT_EQ(span.produced, now.produced);
    EXPECT_EQ(span.outcomes, now.outcomes);
    EXPECT_EQ(span.waiting, now.waiting);
}

TEST(PFrameLedger, has_the_outcomes_in_the_order_of_their_numbers) {
    for (std::size_t i = 0; i < PFrameOutcomeCount; ++i)
        EXPECT_EQ(std::size_t(PFrameLedger::allOutcomes()[i]), i);
    EXPECT_EQ(PFrameOutcomeCount, std::size_t(PFrameOutcome::NotRequested) + 1);
}

TEST(PFrameLedger, has_a_key_and_a_title_of_its_own_for_every_outcome) {
    std::set<QByteArray> keys;
    std::set<QString> titles;
    for (const PFrameOutcome outcome : PFrameLedger::allOutcomes()) {
        EXPECT_FALSE(PFrameLedger::key(outcome).isEmpty());
        EXPECT_FALSE(PFrameLedger::title(outcome).isEmpty());
        keys.insert(PFrameLedger::key(outcome));
        titles.insert(PFrameLedger::title(outcome));
    }
    EXPECT_EQ(keys.size(), PFrameOutcomeCount);
    EXPECT_EQ(titles.size(), PFrameOutcomeCount);
}

namespace {

struct OutcomeRow {
    PFrameOutcome outcome;
    const char* name;
    const char* title;
};

class OutcomeTexts : public RowTest<OutcomeRow> {};

ROW_TEST(OutcomeTexts, are_what_scripts_know_and_what_users_read) {
    EXPECT_EQ(PFrameLedger::key(GetParam().outcome), GetParam().name);
    EXPECT_EQ(PFrameLedger::title(GetParam().outcome), QString::fromLatin1(GetParam().title));
}

} // namespace

ROWS(Rows, OutcomeTexts, OutcomeRow{PFrameOutcome::Delivered, "delivered", "delivered"},
     OutcomeRow{PFrameOutcome::LostInCamera, "lost_in_camera", "lost in the camera"},
     OutcomeRow{PFrameOutcome::BadDepth, "bad_depth", "dropped: unknown pixel depth"},
     OutcomeRow{PFrameOutcome::BadSize, "bad_size", "dropped: wrong size"},
     OutcomeRow{PFrameOutcome::NoMemory, "no_memory", "dropped: no memory"},
     OutcomeRow{PFrameOutcome::DroppedWaiting, "dropped_waiting", "dropped while waiting"},
     OutcomeRow{PFrameOutcome::FailedInWriter, "failed_in_writer", "failed in a writer"},
     OutcomeRow{PFrameOutcome::Failed, "failed", "failed in a listener"},
     OutcomeRow{PFrameOutcome::NotRequested, "not_wanted",
                "arrived after the last requested frame"});
