// SPDX-License-Identifier: MIT
#include <toupcam/sim/world/PSimFaults.h>

#include <chrono>
#include <thread>

namespace {

template <typename Map, typename Key>
std::optional<typename Map::mapped_type> entry(const Map& map, const Key& key) {
    const auto found = map.find(key);
    return found == map.end() ? std::nullopt : std::optional(found->second);
}

} // namespace

void PSimFaults::fail(const std::string& function, std::optional<unsigned> option, unsigned skip,
                      unsigned count, HRESULT result) {
    const std::lock_guard lock(m_mutex);
    m_failures.push_back({function, option, skip, count, count == 0, result});
}

void PSimFaults::delay(const std::string& function, unsigned ms, unsigned skip) {
    const std::lock_guard lock(m_mutex);
    m_delays[function] = {ms, skip};
}

void PSimFaults::reportSize(const std::string& function, PSimSize size) {
    const std::lock_guard lock(m_mutex);
    m_sizes[function] = size;
}

void PSimFaults::answerOption(unsigned option, int value) {
    const std::lock_guard lock(m_mutex);
    m_answers[option] = value;
}

void PSimFaults::clear() {
    const std::lock_guard lock(m_mutex);
    m_failures.clear();
    m_delays.clear();
    m_sizes.clear();
    m_answers.clear();
}

std::optional<PSimSize> PSimFaults::reportedSize(const char* function) const {
    const std::lock_guard lock(m_mutex);
    return entry(m_sizes, function);
}

std::optional<int> PSimFaults::replacedOption(unsigned option) const {
    const std::lock_guard lock(m_mutex);
    return entry(m_answers, option);
}

std::optional<HRESULT> PSimFaults::onCall(const char* function, std::optional<unsigned> option) {
    const unsigned ms = takeDelay(function);
    if (ms > 0)
        std::this_thread::sleep_for(std::chrono::milliseconds(ms));
    return takeFailure(function, option);
}

unsigned PSimFaults::takeDelay(const std::string& function) {
    const std::lock_guard lock(m_mutex);
    const auto found = m_delays.find(function);
    if (found == m_delays.end())
        return 0;
    if (found->second.skip == 0)
        return found->second.ms;
    --found->second.skip;
    return 0;
}

std::optional<HRESULT> PSimFaults::takeFailure(const std::string& function,
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
