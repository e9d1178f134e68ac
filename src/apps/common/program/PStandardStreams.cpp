// SPDX-License-Identifier: MIT
#include <apps/common/program/PStandardStreams.h>

#include <cstdio>
#include <initializer_list>

#include <fcntl.h>
#include <unistd.h>

namespace {

int keptOutput = STDOUT_FILENO; // changed once, before there are threads that use it

} // namespace

void PStandardStreams::reserve() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(stream, F_GETFD) >= 0)
            continue;
        // It gets the lowest free number, which is this one; in the direction that nobody uses.
        [[maybe_unused]] const int reserved =
            ::open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
}

void PStandardStreams::keepOutputForData() {
    std::fflush(stdout);
    keptOutput = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    ::dup2(STDERR_FILENO, STDOUT_FILENO);
}

int PStandardStreams::dataOutput() {
    return keptOutput;
}
