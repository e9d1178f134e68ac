// SPDX-License-Identifier: MIT
#pragma once

#include <PDip/PImage.h>

#include <QPoint>

#include <optional>

/// One pixel of a picture. A value type.
struct PPixelValue {
    QPoint at; ///< column and row, from 0
    int red = 0;
    int green = 0;
    int blue = 0;
    bool isGrey = false; ///< all three are the grey value

    /// The pixel at this place, or nothing outside of the picture. Any thread.
    static std::optional<PPixelValue> of(const PImage& image, QPoint at);
    /// "x 12, y 30: 120" or "x 12, y 30: R 255  G 0  B 7".
    QString text() const;
};
