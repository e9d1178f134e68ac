// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <array>
#include <cstring>
#include <memory>

/// How often each pair of bytes occurs. Counting is one addition to memory per pair, whose speed is
/// limited to about one in a cycle: so pairs take half the time of single bytes. One thread.
class PPairCounts {
public:
    using Counts = std::array<quint64, 256>; ///< of single bytes

    /// Counts a pair; at most 2^32 - 1 fit.
    void add(quint16 pair) { ++(*m_counts)[pair]; }
    /// The same for two bytes that are beside each other in memory.
    void addAt(const unsigned char* bytes) {
        quint16 pair;
        std::memcpy(&pair, bytes, sizeof pair);
        add(pair);
    }

    /// Adds the counts of the lower bytes of all pairs to the one, and of the higher to the other;
    /// they may be the same.
    void addTo(Counts& lower, Counts& higher) const {
        for (std::size_t high = 0; high < 256; ++high) {
            for (std::size_t low = 0; low < 256; ++low) {
                const quint32 count = (*m_counts)[high << 8 | low];
                lower[low] += count;
                higher[high] += count;
            }
        }
    }

private:
    using Table = std::array<quint32, 65'536>;
    std::unique_ptr<Table> m_counts = std::make_unique<Table>();
};
