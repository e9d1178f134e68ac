// SPDX-License-Identifier: MIT
#pragma once

#include <reliability/CallFault.h>

#include <cstdint>
#include <random>

/// The cases that are tried with a session of these calls: every call with every failure, and with
/// a callback just before and just after it, whose kind the seed selects. One thread.
class FaultPlan {
public:
    FaultPlan(std::vector<SdkCall> calls, std::uint64_t seed);

    /// All cases, in an order that the seed selects and in which each function comes as early as
    /// any other.
    const std::vector<CallFaults>& single() const { return m_single; }
    /// This number of cases with two faults each, at different calls.
    std::vector<CallFaults> pairs(std::size_t count) const;

private:
    void addCases(const SdkCall& call, std::mt19937_64& random);
    void mixFunctions();

    std::vector<SdkCall> m_calls;
    std::uint64_t m_seed;
    std::vector<CallFaults> m_single;
};
