// SPDX-License-Identifier: MIT
#pragma once

#include <QSize>

class PDevice;

/// How many pixels of the sensor make one pixel of a picture. The device's thread.
class PPixelScale {
public:
    /// Pixels of the largest mode along one side of a pixel of the picture, which has this size: a
    /// smaller mode combines several, and so does binning. 1 if unknown. Reads the modes from the
    /// camera; everything else comes from cached values.
    static double of(PDevice& device, QSize picture);
};
