// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/frame/PSimPicture.h>

/// Brings rows to their place in a picture, flipped and turned, each pixel moved at most once. Used
/// on one thread.
class PSimOrienter {
public:
    /// `size` is that of the rows before they are turned; the picture has its final size and
    /// memory.
    PSimOrienter(const PSimOrientation& orientation, const PSimSize& size, PSimPicture& picture);

    /// Where row `y` is to be written, 0 first, then each of the others in order.
    std::uint8_t* line(unsigned y);
    /// That row has been written.
    void written(unsigned y);

private:
    bool isDirect() const { return !m_orientation.exchanged && !m_orientation.mirroredX; }
    std::uint8_t* target(unsigned y) const;
    void writeMirrored(unsigned y);
    void writeExchanged(unsigned first, unsigned count);

    const PSimOrientation m_orientation;
    const PSimSize m_size;
    const unsigned m_pixelBytes;
    const std::size_t m_stride;
    std::uint8_t* const m_out;
    std::vector<std::uint8_t> m_band; ///< rows that cannot be written where they belong
};
