// SPDX-License-Identifier: MIT
#include <apps/common/program/PStandardStreams.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <string>

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

/// What a process writes whose output is kept for data: a line of each kind.
int keepOutput(int output, int errors) {
    dup2(output, STDOUT_FILENO);
    dup2(errors, STDERR_FILENO);
    PStandardStreams::keepOutputForData();
    std::printf("printed\n");
    std::fflush(stdout);
    return write(PStandardStreams::dataOutput(), "data\n", 5) == 5 ? 0 : 1;
}

std::string readAll(int pipe) {
    char bytes[100];
    const ssize_t size = read(pipe, bytes, sizeof bytes);
    return {bytes, std::size_t(std::max<ssize_t>(size, 0))};
}

TEST(PStandardStreams, an_output_for_data_has_nothing_else) {
    std::array<int, 2> output{};
    std::array<int, 2> errors{};
    ASSERT_EQ(pipe(output.data()), 0);
    ASSERT_EQ(pipe(errors.data()), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0)
        _exit(keepOutput(output[1], errors[1]));
    for (const int end : {output[1], errors[1]})
        close(end);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(readAll(output[0]), "data\n");
    EXPECT_EQ(readAll(errors[0]), "printed\n");
    for (const int end : {output[0], errors[0]})
        close(end);
}

TEST(PStandardStreams, that_are_open_stay_what_they_are) {
    const std::array<ino_t, 3> before = findStreams();
    PStandardStreams::reserve();
    EXPECT_EQ(findStreams(), before);
}

} // namespace
