// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// Writes the viewer's own records to the log. Any thread.
class PViewLog {
public:
    /// Each logs one record with the source "pcdview".
    static void info(const QString& text);
    static void warning(const QString& text);
};
