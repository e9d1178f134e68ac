// SPDX-License-Identifier: MIT
#pragma once

#include <benchmark/benchmark.h>

#include <ctime>
#include <utility>

/// Times of one piece of work, for the sides of a figure. Thread-safe.
namespace Stopwatch {

/// Nanoseconds that this clock of the system counted during the work.
template <typename Work>
double measureNs(clockid_t clock, Work&& work) {
    timespec begin{};
    timespec end{};
    clock_gettime(clock, &begin);
    std::forward<Work>(work)();
    benchmark::ClobberMemory();
    clock_gettime(clock, &end);
    return double(end.tv_sec - begin.tv_sec) * 1e9 + double(end.tv_nsec - begin.tv_nsec);
}

/// Milliseconds on the wall.
template <typename Work>
double wallMs(Work&& work) {
    return measureNs(CLOCK_MONOTONIC, std::forward<Work>(work)) / 1e6;
}

/// Milliseconds of processor time of the calling thread.
template <typename Work>
double threadMs(Work&& work) {
    return measureNs(CLOCK_THREAD_CPUTIME_ID, std::forward<Work>(work)) / 1e6;
}

/// Milliseconds of processor time of all threads of this process.
template <typename Work>
double processMs(Work&& work) {
    return measureNs(CLOCK_PROCESS_CPUTIME_ID, std::forward<Work>(work)) / 1e6;
}

} // namespace Stopwatch
