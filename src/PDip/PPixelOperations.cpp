// SPDX-License-Identifier: MIT
#include <PDip/PPixelOperations.h>

#include <PDip/PImage.h>

#include <QtEndian>

#include <cstring>
#include <new>

namespace {

/// Whole pixels at a time: compilers vectorise this loop, but not one over single bytes with a
/// stride of four.
void fillX(unsigned char* pixels, std::size_t size) {
    const quint32 mask = qToLittleEndian(quint32(0xFF000000)); // the fourth byte in memory
    for (unsigned char* end = pixels + size; pixels != end; pixels += 4) {
        quint32 pixel;
        std::memcpy(&pixel, pixels, 4);
        pixel |= mask;
        std::memcpy(pixels, &pixel, 4);
    }
}

} // namespace

PStatus PDIP::setXToXRGB(PImage* image) {
    if (!image || image->isNull() || image->header().bytesPerPixel() != 4)
        return PStatus::failure(u"only an image of 32-bit pixels has an X byte"_qs);
    try {
        const ImageRawData raw = image->rawData(AccessMode::ReadWrite);
        fillX(raw.data(), raw.size()); // rows of 4-byte pixels have no padding between them
    } catch (const std::bad_alloc&) {
        return PStatus::failure(
            u"no memory for the pixels of %1x%2"_qs.arg(image->width()).arg(image->height()));
    }
    image->reinterpretFormat(ColorFormat::Xrgb);
    return PStatus::Ok;
}
