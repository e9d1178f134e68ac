// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdview/view/PPixelLayout.h>

#include <QtGlobal>

#include <algorithm>
#include <cstddef>
#include <type_traits>
#include <vector>

/// Splits rows of colour pixels into what is counted of them. Any thread.
namespace PRowSplit {

/// Pixels that are too bright or too dark.
struct Clipped {
    quint64 over = 0;  ///< pixels with a sample at 255
    quint64 under = 0; ///< pixels with all samples at 0
};

/// Where the parts of some pixels are stored; both arrays have room for one entry per pixel.
struct Parts {
    unsigned char* green;
    quint16*
        thirdAndLuma; ///< the third byte in memory, and the luma in the high byte; in any order
};

/// A way to split this number of pixels; adds to `clipped`.
using Split = void (*)(const unsigned char* pixels, std::size_t count, const Parts& parts,
                       Clipped& clipped);

/// BT.601, in 256ths: 0.299, 0.587, 0.114.
constexpr unsigned redWeight = 77;
constexpr unsigned greenWeight = 150;
constexpr unsigned blueWeight = 29;

/// The way that every processor has.
template <typename Layout>
void splitPlainly(const unsigned char* pixels, std::size_t count, const Parts& parts,
                  Clipped& clipped) {
    for (std::size_t i = 0; i < count; ++i, pixels += Layout::bytes) {
        const unsigned char r = pixels[Layout::red];
        const unsigned char g = pixels[Layout::green];
        const unsigned char b = pixels[Layout::blue];
        const unsigned luma = redWeight * r + greenWeight * g + blueWeight * b;
        parts.green[i] = g;
        parts.thirdAndLuma[i] = quint16((luma & 0xFF00) | pixels[2]);
        const unsigned char highest = std::max({r, g, b});
        clipped.over += highest == 255 ? 1 : 0;
        clipped.under += highest == 0 ? 1 : 0;
    }
}

using Bgr = PPixelLayout<3, 2, 1, 0>; ///< of most cameras

/// All ways that this processor has for Bgr, the fastest last. They do the same, except for the
/// order of thirdAndLuma.
const std::vector<Split>& bgrWays();

/// The fastest way for this layout.
template <typename Layout>
Split fastest() {
    if constexpr (std::is_same_v<Layout, Bgr>)
        return bgrWays().back();
    else
        return splitPlainly<Layout>;
}

} // namespace PRowSplit
