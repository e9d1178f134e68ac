// SPDX-License-Identifier: MIT
#include <apps/pcdview/hang/PHangProgram.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>

#include <sys/wait.h>
#include <unistd.h>

namespace {

volatile std::sig_atomic_t terminations = 0;

void countTermination(int) {
    terminations = terminations + 1;
}

/// Calls endViewer() in a child process, with this process as its viewer, and waits for its end.
void endViewerFromChild(pid_t viewer) {
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        PHangProgram::endViewer(viewer);
        ::_exit(0);
    }
    pid_t ended = 0;
    do
        ended = ::waitpid(child, nullptr, 0);
    while (ended < 0 && errno == EINTR); // by the signal that the child sends
    ASSERT_EQ(ended, child);
}

} // namespace

TEST(PHangProgram, sends_the_viewer_the_signal_that_ends_it) {
    terminations = 0;
    const auto before = std::signal(SIGTERM, countTermination);
    endViewerFromChild(::getpid());
    std::signal(SIGTERM, before);
    EXPECT_EQ(terminations, 1);
}

TEST(PHangProgram, sends_no_signal_to_a_process_that_is_not_its_parent) {
    terminations = 0;
    const auto before = std::signal(SIGTERM, countTermination);
    PHangProgram::endViewer(::getpid()); // the test itself, not its parent
    std::signal(SIGTERM, before);
    EXPECT_EQ(terminations, 0);
}
