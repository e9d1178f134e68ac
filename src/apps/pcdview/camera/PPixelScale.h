// SPDX-License-Identifier: MIT
#pragma once

#include <QSize>

class PDevice;

/// How many pixels of the sensor make one of a picture. The device's thread.
class PPixelScale {
public:
    /// Pixels of the largest mode along a side of a pixel of the picture, which has this size: a
    /// smaller mode takes several together, and so does binning. 1 where that is not known. Reads
    /// the modes from the camera; the rest is what the host knows.
    static double of(PDevice& device, QSize picture);
};
