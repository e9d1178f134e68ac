// SPDX-License-Identifier: MIT
#include <reliability/FaultPlan.h>

#include <algorithm>
#include <map>
#include <random>
#include <utility>

namespace {

/// Like std::uniform_int_distribution, which is not the same in every standard library.
std::size_t drawBelow(std::mt19937_64& random, std::size_t below) {
    return std::size_t(random() % below);
}

} // namespace

FaultPlan::FaultPlan(std::vector<SdkCall> calls, std::uint64_t seed)
    : m_calls(std::move(calls))
    , m_seed(seed) {
    std::mt19937_64 random(seed);
    for (const SdkCall& call : m_calls)
        addCases(call, random);
    for (std::size_t i = m_single.size(); i > 1; --i)
        std::swap(m_single[i - 1], m_single[drawBelow(random, i)]);
    mixFunctions();
}

void FaultPlan::addCases(const SdkCall& call, std::mt19937_64& random) {
    for (const CallFault::Kind& kind : CallFault::failures()) {
        if (kind.answer == 0 || CallFault::canFail(call.function))
            m_single.push_back({{call, &kind}});
    }
    for (const auto* kinds : {&CallFault::callbacksBefore(), &CallFault::callbacksAfter()})
        m_single.push_back({{call, &(*kinds)[drawBelow(random, kinds->size())]}});
}

/// The first case of each function, then the second of each, and so on.
void FaultPlan::mixFunctions() {
    std::map<std::string, std::size_t> seen;
    std::vector<std::pair<std::size_t, CallFaults>> ranked;
    for (CallFaults& faults : m_single)
        ranked.emplace_back(seen[faults.front().call.function]++, std::move(faults));
    std::stable_sort(ranked.begin(), ranked.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    m_single.clear();
    for (auto& [rank, faults] : ranked)
        m_single.push_back(std::move(faults));
}

std::vector<CallFaults> FaultPlan::pairs(std::size_t count) const {
    std::mt19937_64 random(m_seed + 1);
    std::vector<CallFaults> result;
    while (result.size() < count && m_calls.size() > 1) {
        const CallFault& first = m_single[drawBelow(random, m_single.size())].front();
        const CallFault& second = m_single[drawBelow(random, m_single.size())].front();
        if (first.call.function != second.call.function || first.call.number != second.call.number)
            result.push_back({first, second});
    }
    return result;
}
