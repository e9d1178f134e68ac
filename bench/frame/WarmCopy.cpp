// SPDX-License-Identifier: MIT
#include <frame/WarmCopy.h>

#include <benchmark/benchmark.h>

#include <cstring>

void WarmCopy::take(const StubFrame& frame) {
    std::memcpy(m_target.data(), frame.pixels(), frame.size());
    benchmark::DoNotOptimize(m_target.data());
    benchmark::ClobberMemory();
}
