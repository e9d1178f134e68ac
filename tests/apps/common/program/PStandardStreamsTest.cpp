// SPDX-License-Identifier: MIT
#include <apps/common/program/PStandardStreams.h>

#include <gtest/gtest.h>

#include <array>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// What a process does that was started without standard streams; 0 if all is well.
int examineWithoutStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        close(stream);
    PStandardStreams::reserve();
    char byte = 'x';
    if (read(STDIN_FILENO, &byte, 1) >= 0)
        return 1;
    if (write(STDOUT_FILENO, &byte, 1) >= 0 || write(STDERR_FILENO, &byte, 1) >= 0)
        return 2;
    return open("/dev/null", O_RDONLY) > STDERR_FILENO ? 0 : 3;
}

std::array<ino_t, 3> findStreams() {
    std::array<ino_t, 3> found{};
    for (int stream = 0; stream < 3; ++stream) {
        struct stat info {};
        fstat(stream, &info);
        found[std::size_t(stream)] = info.st_ino;
    }
    return found;
}

TEST(PStandardStreams, that_are_closed_fail_and_give_their_numbers_to_no_file) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0)
        _exit(examineWithoutStreams());
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

TEST(PStandardStreams, that_are_open_stay_what_they_are) {
    const std::array<ino_t, 3> before = findStreams();
    PStandardStreams::reserve();
    EXPECT_EQ(findStreams(), before);
}

} // namespace
