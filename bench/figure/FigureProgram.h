// SPDX-License-Identifier: MIT
#pragma once

#include <figure/Figure.h>

#include <functional>

/// The benchmarks of a program as figures, run by Google Benchmark: its filters and its JSON output
/// work as usual. Main thread.
class FigureProgram {
public:
    /// Makes what the measurements need; called only if the figure is run, and released after it.
    using Prepare = std::function<FigurePair()>;

    /// Adds a figure to the program. Its two sides are measured in turns, one after the other, with
    /// the order changed each time, so that both see the same machine; one turn before them is not
    /// counted. The result is the median of each, and of the ratios within the turns.
    static void add(const Figure& figure, Prepare prepare);

    /// Adds a figure that this build cannot measure, and why, in a few words: the table has its
    /// row, and the run does not succeed.
    static void addMissing(const Figure& figure, const std::string& reason);

    /// The main() of the program: runs the figures that the command line selects. Returns the exit
    /// code: not 0 if an option is wrong, if nothing was run, or if something could not be
    /// measured.
    static int run(int argc, char** argv);
};
