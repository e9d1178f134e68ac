// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// What the viewer itself puts into the log. Any thread.
class PViewLog {
public:
    static void info(const QString& text);
    static void warning(const QString& text);
};
