// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/frame/PSimPicture.h>

/// Writes rows to their places in a picture, flipped and rotated, moving each pixel at most once.
/// Used on one thread.
class PSimOrienter {
public:
    /// `size` is that of the rows before rotation; the picture has its final size and memory.
    PSimOrienter(const PSimOrientation& orientation, const PSimSize& size, PSimPicture& picture);

    /// The place to write row `y` to, beginning with 0, in order.
    std::uint8_t* line(unsigned y);
    /// To be called when that row has been written.
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
    std::vector<std::uint8_t> m_band; ///< rows that cannot be written in place
};
