// SPDX-License-Identifier: MIT
#pragma once

#include <QVariant>

/// @file
/// Whole numbers as files have them.

/// True if a value that was read from a file is a whole number. Any thread.
inline bool isWholeNumber(const QVariant& form) {
    return form.typeId() == QMetaType::Int || form.typeId() == QMetaType::LongLong;
}
