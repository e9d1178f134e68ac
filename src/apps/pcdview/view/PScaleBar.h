// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QPainter;
class QRectF;

/// A bar of a round length in the corner of a view. A value type; the thread that paints.
struct PScaleBar {
    double micrometres = 0;
    double pixels = 0; ///< in the view; 0: there is no bar

    /// The longest of 1, 2, 5, 10 … that does not exceed `atMost` pixels of the view. No bar if the
    /// size of a pixel (micrometres per pixel of the view) is unknown, that is 0.
    static PScaleBar of(double micrometresAPixel, double atMost);

    /// "50 µm", "2 mm", "500 nm".
    QString text() const;
    /// Paints it into the lower left corner of the area.
    void paint(QPainter& painter, const QRectF& area) const;
};
