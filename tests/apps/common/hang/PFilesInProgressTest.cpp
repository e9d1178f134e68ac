// SPDX-License-Identifier: MIT
#include <apps/common/hang/PFilesInProgress.h>

#include <gtest/gtest.h>

#include <thread>

TEST(PFilesInProgress, all_that_exist_are_completed_by_the_thread_that_requests_it) {
    int completed = 0;
    std::thread::id by;
    const auto complete = [&] {
        ++completed;
        by = std::this_thread::get_id();
    };
    const PFilesInProgress first(complete);
    const PFilesInProgress second(complete);
    std::thread requests(PFilesInProgress::completeAll);
    const std::thread::id requester = requests.get_id();
    requests.join();
    EXPECT_EQ(completed, 2);
    EXPECT_EQ(by, requester);
}

TEST(PFilesInProgress, those_that_no_longer_exist_are_not_completed) {
    int completed = 0;
    {
        const PFilesInProgress files([&] { ++completed; });
    }
    PFilesInProgress::completeAll();
    EXPECT_EQ(completed, 0);
}
