// SPDX-License-Identifier: MIT
#pragma once

#include <PDip/PDipTypes.h>

/// The order of the colours in a pixel's memory, as constants for inner loops. Any thread.
template <int BytesPerPixel, int RedAt, int GreenAt, int BlueAt>
struct PPixelLayout {
    static constexpr int bytes = BytesPerPixel;
    static constexpr int red = RedAt;
    static constexpr int green = GreenAt;
    static constexpr int blue = BlueAt;
    static constexpr bool isGrey = BytesPerPixel == 1;
};

/// Calls the function with the layout of this format; see PDIP::ColorFormat.
template <typename Function>
auto withPixelLayout(PDIP::ColorFormat format, Function function) {
    switch (format) {
    case PDIP::ColorFormat::Gray:
        return function(PPixelLayout<1, 0, 0, 0>());
    case PDIP::ColorFormat::Bgr:
        return function(PPixelLayout<3, 2, 1, 0>());
    case PDIP::ColorFormat::Xrgb:
        return function(PPixelLayout<4, 0, 1, 2>());
    case PDIP::ColorFormat::BgrX:
        break;
    }
    return function(PPixelLayout<4, 2, 1, 0>());
}
