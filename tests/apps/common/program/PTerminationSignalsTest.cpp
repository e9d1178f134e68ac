// SPDX-License-Identifier: MIT
// What happens where the system starts no threads; RecordCommandTest, StreamCommandTest and
// ProgramTest have everything else, in the programs.
#include <apps/common/program/PTerminationSignals.h>

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <system_error>
#include <thread>

using namespace std::chrono_literals;

namespace {

constexpr uid_t nobody = 65534;
constexpr int notTried = 3;

/// From now on this process can start no thread. The limit does not hold for root.
void refuseThreads() {
    const rlimit none{0, 0};
    const bool isLimited = (geteuid() != 0 || setresuid(nobody, nobody, nobody) == 0) &&
                           setrlimit(RLIMIT_NPROC, &none) == 0;
    try {
        std::thread([] {}).join();
        ::_exit(notTried);
    } catch (const std::system_error&) {
        if (!isLimited)
            ::_exit(notTried);
    }
}

void watchWithoutThreads() {
    refuseThreads();
    PTerminationSignals::watch();
    std::raise(SIGTERM);
    ::_exit(0);
}

/// Receives a signal, and does not end by itself.
void giveUpWithoutThreads() {
    PTerminationSignals::watch();
    PTerminationSignals::expect(0ms, [] { ::_exit(7); });
    refuseThreads();
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
