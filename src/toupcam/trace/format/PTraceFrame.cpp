// SPDX-License-Identifier: MIT
#include <toupcam/trace/format/PTraceFrame.h>

#include <toupcam/trace/format/PTraceText.h>

#include <zlib.h>

namespace {

/// The bytes of all rows, which are padded to a multiple of four bytes; 0 if they are none, or more
/// than the most.
std::size_t countBytes(std::size_t width, std::size_t height, std::size_t bytesPerPixel) {
    if (width == 0 || height == 0 || width > PTraceFrame::mostBytes ||
        height > PTraceFrame::mostBytes)
        return 0;
    const std::size_t row = (width * bytesPerPixel + 3) / 4 * 4; // below 2^33
    const std::size_t all = row * height;                        // below 2^63
    return all <= PTraceFrame::mostBytes ? all : 0;
}

} // namespace

std::size_t PTraceFrame::pushedBytes(const BITMAPINFOHEADER& header) {
    const bool isKnown = header.biBitCount == 8 || header.biBitCount == 24;
    if (!isKnown || header.biWidth <= 0 || header.biHeight <= 0)
        return 0;
    const std::size_t bytes = countBytes(std::size_t(header.biWidth), std::size_t(header.biHeight),
                                         header.biBitCount / 8u);
    return bytes == header.biSizeImage ? bytes : 0;
}

std::size_t PTraceFrame::pulledBytes(const ToupcamFrameInfoV2& info, int bits) {
    return bits == 24 || bits == 32 ? countBytes(info.width, info.height, std::size_t(bits) / 8)
                                    : 0;
}

QString PTraceFrame::checksum(const void* data, std::size_t bytes) {
    const auto sum = crc32_z(0, static_cast<const unsigned char*>(data), bytes);
    return PTraceText::fromBits(sum, 8);
}

void PTraceFrame::fillPattern(unsigned char* data, std::size_t bytes, quint32 checksum) {
    for (std::size_t i = 0; i < bytes; ++i)
        data[i] = static_cast<unsigned char>(i + checksum);
}
