// SPDX-License-Identifier: MIT
#include <python/host/PPythonProcess.h>

#include <unistd.h>

namespace {

pid_t firstProcess = 0;

} // namespace

void PPythonProcess::note() {
    firstProcess = getpid();
}

bool PPythonProcess::isForked() {
    return getpid() != firstProcess;
}
