// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <chrono>
#include <optional>

/// Times as users write them on a command line: "1s500ms", "2m", "150us", "1.5s". Any thread.
class PDurationText {
public:
    /// The time in a text: numbers with the units m, s, ms and us (or µs), each at most once and
    /// from large to small; a number alone is in seconds. Truncated to whole microseconds. Nothing
    /// if it is not a time, negative, or longer than a day.
    static std::optional<std::chrono::microseconds> parse(const QString& text);
};
