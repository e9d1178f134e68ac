// SPDX-License-Identifier: MIT
#pragma once

#include <QUuid>

#include <limits>

// Values for testing properties.

constexpr int least = std::numeric_limits<int>::min();
constexpr int most = std::numeric_limits<int>::max();

/// The id of an item, different for each number.
inline QUuid itemId(int number) {
    return QUuid(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, uchar(number));
}
