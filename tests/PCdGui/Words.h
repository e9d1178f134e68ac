// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// A displayed text, from UTF-8.
inline QString words(const char* text) {
    return QString::fromUtf8(text);
}
