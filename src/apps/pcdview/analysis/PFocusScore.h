// SPDX-License-Identifier: MIT
#pragma once

#include <PDip/PImageHeader.h>

/// The Tenengrad measure of sharpness: the mean of the squared gradient, computed with the Sobel
/// operator (J. M. Tenenbaum, "Accommodation in Computer Vision", Stanford 1970; E. Krotkov,
/// "Focusing", International Journal of Computer Vision 1, 1987). No threshold; normalised by the
/// square of the mean. Any thread.
class PFocusScore {
public:
    /// The score of the green (or grey) samples of these pixels; 0 if there are fewer than 3 x 3,
    /// or all are black.
    template <typename Layout>
    static double of(const unsigned char* pixels, const PImageHeader& header);

private:
    template <typename Layout>
    static int squaredGradient(const unsigned char* above, const unsigned char* row,
                               const unsigned char* below);
};

template <typename Layout>
int PFocusScore::squaredGradient(const unsigned char* above, const unsigned char* row,
                                 const unsigned char* below) {
    constexpr int left = -Layout::bytes;
    constexpr int right = Layout::bytes;
    const int across = (above[right] + 2 * row[right] + below[right]) -
                       (above[left] + 2 * row[left] + below[left]);
    const int down =
        (below[left] + 2 * below[0] + below[right]) - (above[left] + 2 * above[0] + above[right]);
    return across * across + down * down;
}

template <typename Layout>
double PFocusScore::of(const unsigned char* pixels, const PImageHeader& header) {
    const long stride = long(header.bytesPerLine());
    double gradients = 0;
    double samples = 0;
    for (long y = 1; y + 1 < header.height(); ++y) {
        const unsigned char* row = pixels + y * stride + Layout::green;
        long long gradientsOfRow = 0;
        long long samplesOfRow = 0;
        for (long x = 1; x + 1 < header.width(); ++x) {
            row += Layout::bytes;
            gradientsOfRow += squaredGradient<Layout>(row - stride, row, row + stride);
            samplesOfRow += *row;
        }
        gradients += double(gradientsOfRow);
        samples += double(samplesOfRow);
    }
    const double count = double(header.width() - 2) * double(header.height() - 2);
    return samples > 0 ? gradients * count / (samples * samples) : 0;
}
