// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/frame/PSimGeometry.h>
#include <toupcam/sim/frame/PSimRows.h>

#include <vector>

/// Rows with squares of pixels joined into one: added, limited to 255, or averaged. Used on one
/// thread.
class PSimBinnedRows : public PSimRows {
public:
    /// `sensor` has the rows of the geometry's region, `channels` bytes a pixel.
    PSimBinnedRows(PSimRows& sensor, const PSimGeometry& geometry, unsigned channels);

    void next(std::uint8_t* out) override;

private:
    PSimRows& m_sensor;
    const unsigned m_binning;
    const unsigned m_divisor;
    const unsigned m_channels;
    const unsigned m_width; ///< binned pixels
    std::vector<std::uint8_t> m_row;
    std::vector<std::uint16_t> m_sums; ///< of a column's pixels
};
