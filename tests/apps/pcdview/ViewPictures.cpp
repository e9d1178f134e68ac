// SPDX-License-Identifier: MIT
#include <apps/pcdview/ViewPictures.h>

#include <vector>

namespace {

std::vector<int> toPixelBytes(const QColor& color, PDIP::ColorFormat format) {
    switch (format) {
    case PDIP::ColorFormat::Gray:
        return {color.green()};
    case PDIP::ColorFormat::Bgr:
        return {color.blue(), color.green(), color.red()};
    case PDIP::ColorFormat::Xrgb:
        return {color.red(), color.green(), color.blue(), 255};
    case PDIP::ColorFormat::BgrX:
        break;
    }
    return {color.blue(), color.green(), color.red(), 0};
}

} // namespace

PImage makePicture(int width, int height, PDIP::ColorFormat format,
                   const std::function<QColor(int x, int y)>& colorAt) {
    PImage image;
    image.create(width, height, format);
    const std::size_t stride = image.bytesPerLine();
    unsigned char* const pixels = image.rawData(PDIP::AccessMode::Write).data();
    for (int y = 0; y < height; ++y) {
        unsigned char* out = pixels + std::size_t(y) * stride;
        for (int x = 0; x < width; ++x) {
            for (int byte : toPixelBytes(colorAt(x, y), format))
                *out++ = static_cast<unsigned char>(byte);
        }
    }
    return image;
}
