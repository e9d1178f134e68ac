// SPDX-License-Identifier: MIT
#pragma once

#include <sys/resource.h>
#include <unistd.h>

#include <system_error>
#include <thread>

/// From now on this process starts no thread, as its user has too many; for a process that a test
/// ends afterwards. False if threads start still.
inline bool refuseThreads() {
    constexpr uid_t nobody = 65534; // the limit does not hold for root
    const rlimit none{0, 0};
    if ((geteuid() == 0 && setresuid(nobody, nobody, nobody) != 0) ||
        setrlimit(RLIMIT_NPROC, &none) != 0)
        return false;
    try {
        std::thread([] {}).join();
    } catch (const std::system_error&) {
        return true;
    }
    return false;
}
