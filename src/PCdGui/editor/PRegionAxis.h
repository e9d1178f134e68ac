// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/PScanAreaRange.h>

#include <PCore/PExport.h>
#include <PCore/PMinMaxRange.h>

/// One direction of a region of the sensor: which offsets and sizes a device accepts, in pixels. A
/// value type; any thread.
class PCD_TEST_EXPORT PRegionAxis {
public:
    /// The axis of left edges and widths, and that of top edges and heights, in a region's range.
    static PRegionAxis horizontal(const PScanAreaRange& range);
    static PRegionAxis vertical(const PScanAreaRange& range);

    /// The offsets at which the smallest region still fits.
    PMinMaxRange<double> offsets() const;
    /// The sizes that fit at an offset.
    PMinMaxRange<double> sizes(int offset) const;
    /// A size limited to what fits at an offset.
    int fitted(int offset, int size) const;

private:
    PRegionAxis(int first, int end, int minimum, int sizeStep, int offsetStep);

    int m_first; ///< first pixel
    int m_end;   ///< pixel after the last
    int m_sizeStep;
    int m_offsetStep;
    int m_minimum;
};
