// SPDX-License-Identifier: MIT
#pragma once

#include <figure/Figure.h>

#include <vector>

/// The costs of both sides of a figure, measured in turns. A value type.
class Turns {
public:
    /// Measures both sides this many times, after once that does not count. Throws
    /// std::runtime_error if one of them could not be measured.
    static Turns take(const FigurePair& pair, int count);

    /// The medians.
    double ours() const;
    double reference() const;
    /// The median of ours as a multiple of the reference within a turn: what changes for both
    /// during the run has no part in it.
    double ratio() const;
    /// The distance of the quartiles of those ratios: how far to trust the median.
    double spread() const;

private:
    std::vector<double> m_ours;
    std::vector<double> m_references; // as many, or none
};
