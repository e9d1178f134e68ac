// SPDX-License-Identifier: MIT
#pragma once

#include <stub/SensorNoise.h>

#include <PCore/PExport.h>

#include <toupcam/toupcam.h>

#include <cstddef>
#include <vector>

/// A frame as the stub SDK's cameras have it: pixels in memory of theirs, and the header of the
/// callback. A value type; any thread.
class PCD_EXPORT StubFrame {
public:
    /// A frame of this size in pixels, of 8 or 24 bits each. Its memory has been written to.
    StubFrame(int width, int height, int bits);

    /// Gives it even light and the noise of a sensor, which takes as long to compress as a camera's
    /// frames do.
    void addNoise() { SensorNoise::fill(m_pixels.data(), m_pixels.size()); }

    /// Pushes it into the camera whose stream was started last, on this thread. Throws
    /// std::runtime_error if there is none.
    void push() const;

    const unsigned char* pixels() const { return m_pixels.data(); }
    std::size_t size() const { return m_pixels.size(); }
    int width() const { return m_header.biWidth; }
    int height() const { return m_header.biHeight; }

private:
    BITMAPINFOHEADER m_header{};
    std::vector<unsigned char> m_pixels;
};
