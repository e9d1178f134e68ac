// SPDX-License-Identifier: MIT
#pragma once

#include <PDip/PImage.h>

#include <QtGlobal>

#include <array>
#include <utility>
#include <vector>

/// Statistics of all pixels of one picture. A value type; any thread.
struct PFrameAnalysis {
    using Counts = std::array<quint64, 256>; ///< pixels of each sample value

    std::vector<Counts> channels; ///< one (grey), or red, green and blue; none for no picture
    Counts luma{};                ///< of a colour picture, as grey: BT.601; else as the one channel
    quint64 pixels = 0;
    quint64 over = 0;  ///< pixels with a sample at 255
    quint64 under = 0; ///< pixels with all samples at 0
    /// How sharp the picture is: the Tenengrad measure of the green (or grey) samples, which is the
    /// mean of the squared gradient without a threshold (J. M. Tenenbaum, "Accommodation in
    /// Computer Vision", Stanford 1970; E. Krotkov, "Focusing", International Journal of Computer
    /// Vision 1, 1987), over the square of their mean, so that the brightness of the lamp does not
    /// matter. No unit; 0 for a picture without structure, or with fewer than 3 x 3 pixels.
    double focus = 0;
    int threads = 1; ///< that read it

    bool isGrey() const { return channels.size() == 1; }
    double overShare() const { return share(over); }
    double underShare() const { return share(under); }
    /// The mean sample of a channel (0: grey or red), from 0 to 255.
    double mean(std::size_t channel) const;
    /// The levels between which all but 0.1 % of the samples at either end lie, over all channels.
    std::pair<int, int> usedLevels() const;

    /// Reads every pixel of an image, a large one on several threads; without channels for a null
    /// image. Throws std::bad_alloc or, without more threads, std::system_error.
    static PFrameAnalysis of(const PImage& image);

private:
    double share(quint64 part) const { return pixels == 0 ? 0 : double(part) / double(pixels); }
};
