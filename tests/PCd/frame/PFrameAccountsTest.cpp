// SPDX-License-Identifier: MIT
#include <PCd/frame/PFrameAccounts.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

TEST(PFrameAccounts, has_a_frame_wait_from_its_entry_until_its_fate) {
    PFrameAccounts accounts;
    accounts.enter();
    EXPECT_EQ(accounts.ledger().produced, 1u);
    EXPECT_EQ(accounts.ledger().waiting, 1u);
    accounts.settle(PFrameFate::Delivered);
    EXPECT_EQ(accounts.ledger().produced, 1u);
    EXPECT_EQ(accounts.ledger().waiting, 0u);
    EXPECT_EQ(accounts.ledger().count(PFrameFate::Delivered), 1u);
}

TEST(PFrameAccounts, books_frames_that_were_lost_before_they_were_on_their_way) {
    PFrameAccounts accounts;
    accounts.enterAndSettle(PFrameFate::LostInCamera, 12);
    accounts.enterAndSettle(PFrameFate::BadDepth);
    EXPECT_EQ(accounts.ledger().produced, 13u);
    EXPECT_EQ(accounts.ledger().waiting, 0u);
    EXPECT_EQ(accounts.ledger().count(PFrameFate::LostInCamera), 12u);
    EXPECT_EQ(accounts.ledger().count(PFrameFate::BadDepth), 1u);
}

TEST(PFrameAccounts, counts_snapshots_besides) {
    PFrameAccounts accounts;
    accounts.countSnapshot();
    EXPECT_EQ(accounts.ledger().snapshots, 1u);
    EXPECT_EQ(accounts.ledger().produced, 0u);
}

TEST(PFrameAccounts, is_balanced_at_every_moment_while_several_threads_book) {
    constexpr quint64 perThread = 1000;
    PFrameAccounts accounts;
    std::atomic<int> running{3};
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([&] {
            for (quint64 frame = 0; frame < perThread; ++frame) {
                accounts.enter();
                accounts.enterAndSettle(PFrameFate::BadSize, 2);
                accounts.settle(PFrameFate::Delivered);
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
    EXPECT_EQ(accounts.ledger().count(PFrameFate::Delivered), 3 * perThread);
}
