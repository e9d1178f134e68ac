// SPDX-License-Identifier: MIT
#pragma once

/// Width and height in pixels.
struct PSimSize {
    unsigned width = 0;
    unsigned height = 0;

    bool operator==(const PSimSize& other) const {
        return width == other.width && height == other.height;
    }
};

/// A part of the sensor, in pixels of a resolution.
struct PSimRegion {
    unsigned x = 0;
    unsigned y = 0;
    unsigned width = 0;
    unsigned height = 0;

    /// The whole of a resolution.
    static PSimRegion whole(const PSimSize& size) { return {0, 0, size.width, size.height}; }
    bool operator==(const PSimRegion& other) const {
        return x == other.x && y == other.y && width == other.width && height == other.height;
    }

    /// True if a camera with this many pixels accepts it: the whole sensor; or inside it, at least
    /// 4 x 4 pixels, width and height multiples of 4, offsets even.
    bool fits(const PSimSize& size) const;
    /// The same part of the field at another resolution, cut to what is accepted there.
    PSimRegion scaled(const PSimSize& from, const PSimSize& to) const;
};

/// The effect of rotation and flips together: columns and rows are exchanged first, if at all, then
/// the result is mirrored.
struct PSimOrientation {
    bool exchanged = false;
    bool mirroredX = false;
    bool mirroredY = false;
};

/// What is done to the sensor's pixels, in this order: the region is cut out, binning joins squares
/// of pixels (incomplete squares are dropped), flips, rotation. Plain values, for any thread.
struct PSimGeometry {
    PSimRegion region;
    unsigned binning = 1; ///< pixels to a side of the square, 1 … 4
    bool average = false; ///< binned pixels are averaged instead of added up
    bool hFlip = false;
    bool vFlip = false;
    unsigned rotation = 0; ///< degrees clockwise: 0, 90, 180, 270

    /// Flips and rotation together.
    PSimOrientation orientation() const;
    /// After region and binning.
    PSimSize binnedSize() const { return {region.width / binning, region.height / binning}; }
    /// After all.
    PSimSize finalSize() const;
    /// True if all pixels of a sensor of this size stay unchanged and in place.
    bool isPlain(const PSimSize& sensor) const;
};
