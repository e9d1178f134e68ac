// SPDX-License-Identifier: MIT
#pragma once

#include <PDip/PImage.h>

/// Conversion of colour images to luma and chroma as ITU-R BT.601 defines them, in the limited
/// range: luma from 16 to 235, chroma from 16 to 240. Any thread.
namespace PYuvConversion {

/// How many pixels share the two chroma samples.
enum class Chroma {
    Each,   ///< 4:4:4: each pixel has its own
    Quarter ///< 4:2:0: squares of 2x2 pixels share theirs; at odd edges, what there is of them
};

/// Bytes of the three planes of such an image.
std::size_t planesSize(const PImageHeader& header, Chroma chroma);
/// Writes luma, blue difference and red difference of a colour image, one plane after the other and
/// without padding: planesSize() bytes.
void convert(const PImage& image, Chroma chroma, unsigned char* planes);

} // namespace PYuvConversion
