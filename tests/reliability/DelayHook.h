// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/// Delays threads where they hand over to each other: in SDK calls, before callbacks, and wherever
/// else nap() is called. One for the process; any thread.
namespace DelayHook {

/// From now on some calls and callbacks of the simulator, selected by the seed and the thread, take
/// up to 200 microseconds longer.
void begin(std::uint64_t seed);
void end();

/// Sleeps for up to 200 microseconds, or not at all, while delays are on.
void nap();
/// The number of naps that were taken since the process began.
std::uint64_t naps();

} // namespace DelayHook
