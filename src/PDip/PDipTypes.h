// SPDX-License-Identifier: MIT
#pragma once

/// @file
/// Pixel formats and the other fixed numbers that describe an image.

/// Images: their formats, their pixels, and what can fail.
namespace PDIP {

/// How the pixels of an image are laid out in memory, byte by byte.
enum class ColorFormat : int {
    Gray = 0, ///< 8 bits: one grey sample
    Bgr = 1,  ///< 24 bits: blue, green, red (the camera SDK's order)
    Xrgb = 2, ///< 32 bits in the host's order: red, green, blue, X, with X at 255
    BgrX = 5, ///< 32 bits as pulled from the camera SDK: blue, green, red, an unused byte
};

/// Type of one sample.
enum class Channel : int {
    UInt8 = 0, ///< unsigned 8 bits
};

/// Which row comes first in memory.
enum class Origin : int {
    TopLeft = 0, ///< the top row
};

/// The alignment of rows.
enum class RowsAlign : int {
    FourBytes = 0, ///< multiples of 4 bytes, as in the camera SDK's bitmaps
};

/// The purpose for which pixel memory is opened.
enum class AccessMode : int {
    Read = 0,      ///< reading only; shared memory stays shared
    Write = 1,     ///< overwriting all: memory shared with another image is detached, not copied
    ReadWrite = 2, ///< changing it: memory shared with another image is copied first
};

} // namespace PDIP
