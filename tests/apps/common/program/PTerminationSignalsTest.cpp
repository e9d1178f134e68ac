// SPDX-License-Identifier: MIT
// What happens where the system starts no threads; RecordCommandTest, StreamCommandTest and
// ProgramTest have everything else, in the programs.
#include <apps/common/program/PTerminationSignals.h>

#include <support/NoThreads.h>

#include <gtest/gtest.h>

#include <unistd.h>

#include <csignal>

using namespace std::chrono_literals;

namespace {

constexpr int notTried = 3;

void watchWithoutThreads() {
    if (!refuseThreads())
        ::_exit(notTried);
    PTerminationSignals::watch();
    std::raise(SIGTERM);
    ::_exit(0);
}

/// Receives a signal, and does not end by itself.
void giveUpWithoutThreads() {
    PTerminationSignals::watch();
    PTerminationSignals::expect(0ms, [] { ::_exit(7); });
    if (!refuseThreads())
        ::_exit(notTried);
    ::kill(::getpid(), SIGTERM);
    for (;;)
        ::pause();
}

} // namespace

TEST(PTerminationSignals, without_a_thread_to_watch_a_signal_ends_the_program_as_usual) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(watchWithoutThreads(), testing::KilledBySignal(SIGTERM), "");
}

TEST(PTerminationSignals, without_a_thread_for_it_giving_up_is_called_still) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(giveUpWithoutThreads(), testing::ExitedWithCode(7), "");
}
