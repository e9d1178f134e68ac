// SPDX-License-Identifier: MIT
#include <PCd/frame/PFrameCounters.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

TEST(PFrameCounters, has_a_frame_wait_from_its_entry_until_its_outcome) {
    PFrameCounters accounts;
    accounts.enter();
    EXPECT_EQ(accounts.ledger().produced, 1u);
    EXPECT_EQ(accounts.ledger().waiting, 1u);
    accounts.settle(PFrameOutcome::Delivered);
    EXPECT_EQ(accounts.ledger().produced, 1u);
    EXPECT_EQ(accounts.ledger().waiting, 0u);
    EXPECT_EQ(accounts.ledger().count(PFrameOutcome::Delivered), 1u);
}

TEST(PFrameCounters, books_frames_that_were_lost_before_they_were_on_their_way) {
    PFrameCounters accounts;
    accounts.enterAndSettle(PFrameOutcome::LostInCamera, 12);
    accounts.enterAndSettle(PFrameOutcome::BadDepth);
    EXPECT_EQ(accounts.ledger().produced, 13u);
    EXPECT_EQ(accounts.ledger().waiting, 0u);
    EXPECT_EQ(accounts.ledger().count(PFrameOutcome::LostInCamera), 12u);
    EXPECT_EQ(accounts.ledger().count(PFrameOutcome::BadDepth), 1u);
}

TEST(PFrameCounters, counts_snapshots_separately) {
    PFrameCounters accounts;
    accounts.countSnapshot();
    EXPECT_EQ(accounts.ledger().snapshots, 1u);
    EXPECT_EQ(accounts.ledger().produced, 0u);
}

TEST(PFrameCounters, is_balanced_at_every_moment_while_several_threads_book) {
    constexpr quint64 perThread = 1000;
    PFrameCounters accounts;
    std::atomic<int> running{3};
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([&] {
            for (quint64 frame = 0; frame < perThread; ++frame) {
                accounts.enter();
                accounts.enterAndSettle(PFrameOutcome::BadSize, 2);
                accounts.settle(PFrameOutcome::Delivered);
            }
            --running;
        });
    }
    bool balanced = true;
    while (running > 0)
        balanced = accounts.ledger().isBalanced() && balanced;
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_TRUE(balanced);
    EXPECT_EQ(accounts.ledger().produced, 9 * perThread);
    EXPECT_EQ(accounts.ledger().count(PFrameOutcome::Delivered), 3 * perThread);
}
