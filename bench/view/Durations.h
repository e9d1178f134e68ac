// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <vector>

/// Times that were measured. A value type; all results are in milliseconds, and 0 if nothing was
/// measured.
class Durations {
public:
    void add(std::chrono::steady_clock::duration time);

    std::size_t count() const { return m_milliseconds.size(); }
    /// The value that this share of the times, from 0 to 1, does not exceed.
    double atShare(double share) const;
    double median() const { return atShare(0.5); }
    double longest() const { return atShare(1); }

private:
    std::vector<double> m_milliseconds;
};
