// SPDX-License-Identifier: MIT
#pragma once

#include <PLog/PLogSink.h>

#include <array>
#include <atomic>

class PCrashWriter;

/// Keeps the newest log records as lines in memory of a fixed size, where a signal handler can read
/// them. The thread of each function is that of PLogSink, unless it names another.
class PCrashLog : public PLogSink {
public:
    static constexpr std::size_t lines = 100;
    static constexpr std::size_t longestLine = 500; ///< bytes; longer ones are cut

    void write(const PLogRecord& record) override;

    /// Writes the lines, oldest first, each with a line feed. Any thread, also in a signal handler:
    /// a line that is being replaced then is left out.
    void writeTo(PCrashWriter& writer) const;

private:
    struct Line {
        std::atomic<std::size_t> size{0}; ///< 0: none, or being written
        std::array<char, longestLine> text;
    };

    std::array<Line, lines> m_lines;
    std::atomic<std::size_t> m_next{0}; ///< the number of lines so far
};
