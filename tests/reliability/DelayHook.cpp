// SPDX-License-Identifier: MIT
#include <reliability/DelayHook.h>

#include <toupcam/sim/api/toupcamsim.h>

#include <atomic>
#include <chrono>
#include <random>
#include <thread>

namespace {

constexpr unsigned momentsPerNap = 4;
constexpr unsigned longestMicroseconds = 200;

std::atomic<std::uint64_t> delaySeed{0}; // 0: no delays
std::atomic<std::uint64_t> threadNumber{0};
std::atomic<std::uint64_t> napCount{0};

/// Of this thread, from the seed of the round that it first takes part in.
std::mt19937& threadRandom() {
    thread_local std::mt19937 random{std::mt19937::result_type(delaySeed + ++threadNumber)};
    return random;
}

int delayMoment(const char* /*name*/, int /*moment*/, HRESULT* /*result*/) {
    DelayHook::nap();
    return TOUPCAMSIM_PASS;
}

} // namespace

void DelayHook::begin(std::uint64_t seed) {
    delaySeed = seed + 1;
    ToupcamSim_setHook(delayMoment);
}

void DelayHook::end() {
    ToupcamSim_setHook(nullptr);
    delaySeed = 0;
}

void DelayHook::nap() {
    if (delaySeed == 0 || threadRandom()() % momentsPerNap != 0)
        return;
    ++napCount;
    std::this_thread::sleep_for(
        std::chrono::microseconds(threadRandom()() % (longestMicroseconds + 1)));
}

std::uint64_t DelayHook::naps() {
    return napCount;
}
