// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

/// A way for frames out of a camera: the program that takes it, and how its frames are seen to have
/// arrived. A value type.
struct Way {
    /// What the program does with a frame.
    enum class Arrival {
        Reports, ///< it writes when it had the frame, see WayArrival.h
        Pixels,  ///< it writes the frame; the last byte counts
        Rests,   ///< it writes files, and has no more to do
    };

    std::string name;                   ///< in the names of figures
    std::string text;                   ///< in a few words
    std::vector<std::string> command;   ///< a program of this build folder, or a whole path
    std::vector<std::string> variables; ///< of the environment, NAME=VALUE
    Arrival arrival = Arrival::Reports;
    std::string missing{}; ///< the packages without which this build lacks it; empty: it has it

    /// A sink in the camera's own process: what the others are compared with.
    static Way sink();
    /// The same, with one copy too many.
    static Way copyingSink();
    /// All others.
    static std::vector<Way> others();
};
