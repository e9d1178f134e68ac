// SPDX-License-Identifier: MIT
#include <PDip/PPixelOperations.h>

#include <PDip/PImage.h>

#include <QtEndian>

#include <cstring>
#include <new>

namespace {

constexpr std::size_t pixelBytes = 4;
// Processors read ahead on their own, but only to the end of a page; this far, memory is never
// idle.
constexpr std::size_t aheadBytes = 4096;

/// The pixels in a line of the processor's cache. Compilers split it into registers.
using Line = quint32 __attribute__((vector_size(64)));

/// Sets the fourth byte in memory of each pixel. Pixels is one pixel, or a Line of them.
template <typename Pixels>
void setX(unsigned char* pixels) {
    Pixels values;
    std::memcpy(&values, pixels, sizeof values);
    values |= qToLittleEndian(quint32(0xFF000000));
    std::memcpy(pixels, &values, sizeof values);
}

/// Line by line, each requested in advance. A request beyond the image has no effect.
void setAllX(unsigned char* pixels, std::size_t size) {
    for (; size >= sizeof(Line); size -= sizeof(Line), pixels += sizeof(Line)) {
        __builtin_prefetch(pixels + aheadBytes, 1);
        setX<Line>(pixels);
    }
    for (; size > 0; size -= pixelBytes, pixels += pixelBytes)
        setX<quint32>(pixels);
}

} // namespace

PStatus PDIP::setXToXRGB(PImage* image) {
    if (!image || image->isNull() || image->header().bytesPerPixel() != 4)
        return PStatus::failure(u"only an image of 32-bit pixels has an X byte"_qs);
    try {
        const ImageRawData raw = image->rawData(AccessMode::ReadWrite);
        setAllX(raw.data(), raw.size()); // rows of 4-byte pixels have no padding between them
    } catch (const std::bad_alloc&) {
        return PStatus::failure(u"no memory for the pixels of %1x%2"_qs.arg(
            QString::number(image->width()), QString::number(image->height())));
    }
    image->reinterpretFormat(ColorFormat::Xrgb);
    return PStatus::Ok;
}
