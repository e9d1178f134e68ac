// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <vector>

/// Curves of time and memory against size, as rows of Google Benchmark that scripts/bench draws.
/// Main thread.
namespace GrowthCurve {

/// A curve and the plot that it belongs to: curves of the same plot have the same texts at the
/// axes.
struct Names {
    std::string plot;   ///< "cameras"
    std::string curve;  ///< what was measured
    std::string size;   ///< at the x axis
    std::string first;  ///< at the y axis, with the unit
    std::string second; ///< the same of a second value, in a plot of its own
};

/// What was measured at one size.
struct Point {
    double first = 0;
    double second = 0;
};

/// Adds a row for each size. `measure` runs once for each, and throws std::runtime_error if it
/// cannot.
void add(const Names& names, const std::vector<double>& sizes,
         const std::function<Point(double)>& measure);

/// Runs something that costs this often, after once that does not count; the median cost.
double takeMedian(int runs, const std::function<double()>& cost);

} // namespace GrowthCurve
