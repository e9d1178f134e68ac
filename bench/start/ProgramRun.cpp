// SPDX-License-Identifier: MIT
#include <start/ProgramRun.h>

#include <figure/Stopwatch.h>

#include <array>
#include <csignal>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// A child whose standard output is this descriptor. Returns 0 if it could not be started.
pid_t start(const std::vector<std::string>& command, int output) {
    std::vector<char*> words;
    for (const std::string& word : command)
        words.push_back(const_cast<char*>(word.c_str())); // not changed; the interface lacks const
    words.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    pid_t child = 0;
    const int failed = posix_spawn(&child, words.front(), &actions, nullptr, words.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    return failed == 0 ? child : 0;
}

bool waitForEnd(pid_t child) {
    int status = 0;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

bool readLine(int input) {
    char letter = 0;
    while (letter != '\n') {
        if (read(input, &letter, 1) != 1)
            return false; // it has ended
    }
    return true;
}

} // namespace

double ProgramRun::untilEnd(const std::vector<std::string>& command) {
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    bool isDone = false;
    const double cost = Stopwatch::wallMs([&] {
        const pid_t child = start(command, nowhere);
        isDone = child != 0 && waitForEnd(child);
    });
    close(nowhere);
    return isDone ? cost : -1;
}

double ProgramRun::untilLine(const std::vector<std::string>& command) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        return -1;
    bool isDone = false;
    pid_t child = 0;
    const double cost = Stopwatch::wallMs([&] {
        child = start(command, ends[1]);
        close(ends[1]); // so that reading ends with the program
        isDone = child != 0 && readLine(ends[0]);
    });
    if (child != 0) {
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
    }
    close(ends[0]);
    return isDone ? cost : -1;
}
