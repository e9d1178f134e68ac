// SPDX-License-Identifier: MIT
#include <stub/StubFrame.h>

#include <stub/StubSdk.h>

#include <stdexcept>

namespace {

/// Rows are padded to a multiple of four bytes.
std::size_t countBytes(int width, int height, int bits) {
    const std::size_t row = std::size_t(width) * std::size_t(bits) / 8;
    return (row + 3) / 4 * 4 * std::size_t(height);
}

} // namespace

StubFrame::StubFrame(int width, int height, int bits)
    : m_pixels(countBytes(width, height, bits), 0x55) {
    m_header.biSize = sizeof m_header;
    m_header.biWidth = width;
    m_header.biHeight = height;
    m_header.biPlanes = 1;
    m_header.biBitCount = static_cast<unsigned short>(bits);
    m_header.biSizeImage = unsigned(m_pixels.size());
}

void StubFrame::push() const {
    if (!StubSdk::push(m_pixels.data(), m_header))
        throw std::runtime_error("no camera streams");
}
