// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <fstream>
#include <mutex>
#include <string>

/// The record of every SDK call: one line each, oldest first, at most 100,000. Callable from any
/// thread.
class PSimJournal {
public:
    static constexpr std::size_t maxLines = 100000;

    /// Also appends each line to this file; an unwritable path is reported on stderr and ignored.
    void copyToFile(const std::string& path);
    void add(std::string line);
    void clear();
    std::size_t size() const;
    /// The line of this index, empty beyond the end.
    std::string line(std::size_t index) const;

private:
    mutable std::mutex m_mutex; // guards all below: every thread that calls the SDK adds lines
    std::deque<std::string> m_lines;
    std::ofstream m_file;
};
