// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdview/view/PViewGeometry.h>
#include <apps/pcdview/view/PViewStyle.h>

#include <PDip/PImage.h>

#include <QColor>
#include <QImage>

/// Draws the visible part of a picture directly from its memory, so that the work grows with the
/// view and not with the sensor. Any thread.
class PViewSampler {
public:
    /// Samples along one axis for each pixel of the view, where the picture is reduced.
    static constexpr int samplesAnAxis = 2;

    static QRgb overMark() { return qRgb(255, 0, 0); }   ///< a sample is 255
    static QRgb underMark() { return qRgb(0, 80, 255); } ///< all samples are 0

    /// A picture of the viewport's size in Format_RGB32; what the picture does not cover has this
    /// colour. `room` is memory from an earlier call that may be reused.
    static QImage render(const PImage& image, const PViewGeometry& geometry,
                         const PViewStyle& style, QColor around, QImage room = {});
};
