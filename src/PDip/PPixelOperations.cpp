// SPDX-License-Identifier: MIT
#include <PDip/PPixelOperations.h>

#include <PDip/PFourthByte.h>
#include <PDip/PImage.h>

#include <new>

PStatus PDIP::setXToXRGB(PImage* image) {
    if (!image || image->isNull() || image->header().bytesPerPixel() != 4)
        return PStatus::failure(u"only an image of 32-bit pixels has an X byte"_qs);
    try {
        const ImageRawData raw = image->rawData(AccessMode::ReadWrite);
        // Rows of 4-byte pixels have no padding between them.
        PFourthByte::fastest()(raw.data(), raw.size());
    } catch (const std::bad_alloc&) {
        return PStatus::failure(u"no memory for the pixels of %1x%2"_qs.arg(
            QString::number(image->width()), QString::number(image->height())));
    }
    image->reinterpretFormat(ColorFormat::Xrgb);
    return PStatus::Ok;
}
