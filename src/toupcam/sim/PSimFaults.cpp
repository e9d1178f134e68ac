// SPDX-License-Identifier: MIT
#include <toupcam/sim/PSimFaults.h>

#include <chrono>
#include <thread>

void PSimFaults::fail(const std::string& function, std::optional<unsigned> option, unsigned skip,
                      unsigned count, HRESULT result) {
    const std::lock_guard lock(m_mutex);
    m_failures.push_back({function, option, skip, count, count == 0, result});
}

void PSimFaults::delay(const std::string& function, unsigned ms) {
    const std::lock_guard lock(m_mutex);
    m_delays[function] = ms;
}

void PSimFaults::clear() {
    const std::lock_guard lock(m_mutex);
    m_failures.clear();
    m_delays.clear();
}

std::optional<HRESULT> PSimFaults::onCall(const char* function, std::optional<unsigned> option) {
    const unsigned ms = delayOf(function);
    if (ms > 0)
        std::this_thread::sleep_for(std::chrono::milliseconds(ms));
    return failureOf(function, option);
}

unsigned PSimFaults::delayOf(const std::string& function) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_delays.find(function);
    return found == m_delays.end() ? 0 : found->second;
}

std::optional<HRESULT> PSimFaults::failureOf(const std::string& function,
                                             std::optional<unsigned> option) {
    const std::lock_guard lock(m_mutex);
    for (Failure& failure : m_failures) {
        if (failure.function != function || (failure.option && failure.option != option))
            continue;
        if (failure.skip > 0) {
            --failure.skip;
            continue;
        }
        if (!failure.endless && failure.left == 0)
            continue;
        if (!failure.endless)
            --failure.left;
        return failure.result;
    }
    return std::nullopt;
}
