// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

/// One row of the table that scripts/bench prints: a cost of ours beside that of a reference, with
/// the bound that it must keep. A value type.
struct Figure {
    /// What the target bounds.
    enum class Bound {
        Ratio, ///< ours as a multiple of the reference
        Value, ///< ours alone, in the unit; there is no reference
    };

    std::string name;      ///< subject/size, "callback/20MP-24bit"; unique in all programs
    std::string ours;      ///< what is measured, in a few words
    std::string reference; ///< what it is compared with, in a few words; empty without one
    std::string unit;      ///< of both costs, "ms", "us", "KiB", "faults"
    double target = 0;     ///< the largest value that holds
    Bound bound = Bound::Ratio;
    int turns = 15; ///< how often both are measured; the median counts, so 9 at least of a time
};

/// Measures a cost once and returns it in the unit of its figure. A negative cost means that it
/// could not be measured.
using Measurement = std::function<double()>;

/// Both sides of a figure, ready to be measured in turns; reference is empty for a bound on the
/// value alone.
struct FigurePair {
    Measurement ours;
    Measurement reference;
};
