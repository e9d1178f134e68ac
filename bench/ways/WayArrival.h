// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>

#include <unistd.h>

/// What a program that bench_ways starts says of a frame: when it had it. Any thread.
namespace WayArrival {

/// Nanoseconds of the system's monotonic clock, which all processes share.
using Time = std::int64_t;

inline Time now() {
    return std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

/// Writes the time to standard output; false if nobody reads it.
inline bool report() {
    const Time time = now();
    return ::write(STDOUT_FILENO, &time, sizeof time) == sizeof time;
}

} // namespace WayArrival
