// SPDX-License-Identifier: MIT
#include <PCd/PFrameLedger.h>

#include <support/QtPrinters.h>
#include <support/RowName.h>

#include <gtest/gtest.h>

#include <set>

TEST(PFrameLedger, is_balanced_when_it_is_empty) {
    EXPECT_TRUE(PFrameLedger().isBalanced());
}

TEST(PFrameLedger, is_balanced_when_every_frame_has_its_fate_or_waits) {
    PFrameLedger ledger;
    ledger.produced = 6;
    ledger.waiting = 1;
    ledger.fates[std::size_t(PFrameFate::Delivered)] = 3;
    ledger.fates[std::size_t(PFrameFate::NotWanted)] = 2;
    EXPECT_TRUE(ledger.isBalanced());
}

TEST(PFrameLedger, is_not_balanced_when_a_frame_has_no_fate) {
    PFrameLedger ledger;
    ledger.produced = 2;
    ledger.fates[std::size_t(PFrameFate::Delivered)] = 1;
    EXPECT_FALSE(ledger.isBalanced());
}

TEST(PFrameLedger, is_not_balanced_when_a_frame_has_two_fates) {
    PFrameLedger ledger;
    ledger.produced = 1;
    ledger.fates[std::size_t(PFrameFate::Delivered)] = 1;
    ledger.fates[std::size_t(PFrameFate::FailedInWriter)] = 1;
    EXPECT_FALSE(ledger.isBalanced());
}

TEST(PFrameLedger, does_not_weigh_snapshots_which_are_frames_besides) {
    PFrameLedger ledger;
    ledger.snapshots = 4;
    EXPECT_TRUE(ledger.isBalanced());
}

TEST(PFrameLedger, has_the_fates_in_the_order_of_their_numbers) {
    for (std::size_t i = 0; i < PFrameFateCount; ++i)
        EXPECT_EQ(std::size_t(PFrameLedger::allFates()[i]), i);
    EXPECT_EQ(PFrameFateCount, std::size_t(PFrameFate::NotWanted) + 1);
}

TEST(PFrameLedger, has_a_key_and_a_title_of_its_own_for_every_fate) {
    std::set<QByteArray> keys;
    std::set<QString> titles;
    for (const PFrameFate fate : PFrameLedger::allFates()) {
        EXPECT_FALSE(PFrameLedger::key(fate).isEmpty());
        EXPECT_FALSE(PFrameLedger::title(fate).isEmpty());
        keys.insert(PFrameLedger::key(fate));
        titles.insert(PFrameLedger::title(fate));
    }
    EXPECT_EQ(keys.size(), PFrameFateCount);
    EXPECT_EQ(titles.size(), PFrameFateCount);
}

namespace {

struct FateRow {
    PFrameFate fate;
    const char* name;
};

class FateKey : public testing::TestWithParam<FateRow> {};

TEST_P(FateKey, is_what_scripts_know) {
    EXPECT_EQ(PFrameLedger::key(GetParam().fate), GetParam().name);
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Rows, FateKey,
                         testing::Values(FateRow{PFrameFate::Delivered, "delivered"},
                                         FateRow{PFrameFate::LostInCamera, "lost_in_camera"},
                                         FateRow{PFrameFate::BadDepth, "bad_depth"},
                                         FateRow{PFrameFate::BadSize, "bad_size"},
                                         FateRow{PFrameFate::NoMemory, "no_memory"},
                                         FateRow{PFrameFate::DroppedWaiting, "dropped_waiting"},
                                         FateRow{PFrameFate::FailedInWriter, "failed_in_writer"},
                                         FateRow{PFrameFate::Failed, "failed"},
                                         FateRow{PFrameFate::NotWanted, "not_wanted"}),
                         RowName());
