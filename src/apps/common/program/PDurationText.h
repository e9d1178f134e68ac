// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <chrono>
#include <optional>

/// Times as people write them on a command line: "1s500ms", "2m", "150us", "1.5s". Any thread.
class PDurationText {
public:
    /// The time that a text means: numbers with the units m, s, ms and us (or µs), each at most
    /// once and from large to small; a number alone is in seconds. Cut to whole microseconds.
    /// Nothing if it means none, is negative, or longer than a day.
    static std::optional<std::chrono::microseconds> parse(const QString& text);
};
