// SPDX-License-Identifier: MIT
#include <PCore/PFaultStack.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <iterator>
#include <thread>

#include <unistd.h>

// That a handler runs on it, when a stack is exhausted, is tested with PCrashReport.

namespace {

/// The second stack of the calling thread; null if there is none.
void* findStack() {
    stack_t present{};
    ::sigaltstack(nullptr, &present);
    return (present.ss_flags & SS_DISABLE) == 0 ? present.ss_sp : nullptr;
}

bool isMapped(const void* memory) {
    // Reads one byte through the system, which reports where there is none.
    int ends[2];
    if (::pipe(ends) != 0)
        return false;
    const bool isReadable = ::write(ends[1], memory, 1) == 1;
    ::close(ends[0]);
    ::close(ends[1]);
    return isReadable;
}

/// What a thread had before and after it asked for a stack, and again.
struct Stacks {
    void* before = nullptr;
    void* given = nullptr;
    void* again = nullptr;
    bool isUsable = false;
};

Stacks askOnThread() {
    Stacks found;
    std::thread([&] {
        found.before = findStack();
        PFaultStack::giveThread();
        found.given = findStack();
        PFaultStack::giveThread();
        found.again = findStack();
        found.isUsable = isMapped(found.given);
    }).join();
    return found;
}

TEST(PFaultStack, is_not_given_in_a_program_that_has_no_use_for_it) {
    const auto exitWithAnswer = [] {
        const Stacks found = askOnThread();
        ::_exit(found.given == found.before ? 0 : 1);
    };
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // in a program of its own
    EXPECT_EXIT(exitWithAnswer(), testing::ExitedWithCode(0), "");
}

TEST(PFaultStack, is_given_once_and_only_to_a_thread_that_has_none) {
    PFaultStack::want();
    const Stacks found = askOnThread();
    EXPECT_NE(found.given, nullptr);
    EXPECT_TRUE(found.isUsable);
    EXPECT_EQ(found.again, found.given);
    if (found.before != nullptr) {
        EXPECT_EQ(found.given, found.before) << "a sanitizer's";
    }
}

TEST(PFaultStack, is_freed_when_its_thread_ends) {
    PFaultStack::want();
    const auto countMappings = [] {
        std::ifstream maps("/proc/self/maps");
        return std::count(std::istreambuf_iterator<char>(maps), {}, '\n');
    };
    const auto startThreads = [](int count) {
        for (int i = 0; i < count; ++i)
            askOnThread();
    };
    startThreads(100); // a sanitizer keeps something of the first ones
    const auto before = countMappings();
    startThreads(200);
    EXPECT_LT(countMappings(), before + 100);
}

} // namespace
