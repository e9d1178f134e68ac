// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/PScanAreaRange.h>

#include <QRect>
#include <QSize>

class PDevice;

/// Converts regions of a picture to regions of the sensor. A picture shows a region of the sensor,
/// made smaller by binning, then flipped, then rotated. A value type.
struct PRegionMap {
    QRect onSensor;               ///< what the picture shows, in pixels of the sensor
    QSize picture;                ///< in pixels
    int rotation = 0;             ///< degrees clockwise: 0, 90, 180 or 270
    bool isFlippedAcross = false; ///< left and right are exchanged
    bool isFlippedDown = false;   ///< top and bottom are exchanged

    /// The map for a device whose pictures have this size, from its region, rotation and flips; a
    /// property that it does not have changes nothing. The device's thread.
    static PRegionMap of(const PDevice& device, QSize picture);

    /// The region of the sensor that is shown in a region of the picture, rounded outwards to whole
    /// pixels.
    QRect toSensor(const QRect& inPicture) const;

    /// The nearest region that the device accepts: inside the sensor, not too small, on its steps.
    /// Offsets are always even, because a colour sensor's filter repeats every two pixels, and
    /// devices refuse odd offsets even if their range allows them. Null if there is no such region.
    static QRect snapped(const QRect& wanted, const PScanAreaRange& range);
};
