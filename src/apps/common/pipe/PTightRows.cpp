// SPDX-License-Identifier: MIT
#include <apps/common/pipe/PTightRows.h>

#include <cstring>

PByteView PTightRows::pack(const PImage& image) {
    const PImageHeader header = image.header();
    const PDIP::ImageRawData pixels = image.rawData(PDIP::AccessMode::Read);
    const std::size_t rowBytes = std::size_t(header.width()) * header.bytesPerPixel();
    if (rowBytes == header.bytesPerLine())
        return {pixels.constData(), pixels.size()};
    m_copy.resize(rowBytes * std::size_t(header.height()));
    for (std::size_t y = 0; y < std::size_t(header.height()); ++y)
        std::memcpy(m_copy.data() + y * rowBytes, pixels.constData() + y * header.bytesPerLine(),
                    rowBytes);
    return {m_copy.data(), m_copy.size()};
}
