// SPDX-License-Identifier: MIT
#include <apps/common/tiff/PTiffEncoder.h>

#include <apps/common/tiff/PTiffMemory.h>
#include <apps/common/tiff/PTiffTags.h>

#include <new>

namespace {

bool writeRows(TIFF* tiff, const QImage& image) {
    for (int y = 0; y < image.height(); ++y) {
        // libtiff only reads the row, but its interface lacks const.
        if (TIFFWriteScanline(tiff, const_cast<uchar*>(image.constScanLine(y)), uint32_t(y)) < 0)
            return false;
    }
    return TIFFWriteDirectory(tiff) != 0;
}

/// True if the largest possible size of rows, directory and text is below the format's 4 GiB.
bool fits(const QImage& image, int samples, const QByteArray& description) {
    constexpr qint64 directory = 4096;
    const qint64 pixels = qint64(image.width()) * image.height() * samples;
    return pixels > 0 && pixels + description.size() + directory < qint64(1) << 32;
}

} // namespace

QByteArray PTiffEncoder::encode(const QImage& image, const QString& description,
                                const PPictureTags& picture) {
    const int samples = image.isGrayscale() ? 1 : 3;
    const QByteArray text = description.toUtf8();
    if (!fits(image, samples, text))
        return {};
    PTiffMemory file(qsizetype(image.width()) * image.height() * samples + text.size());
    const auto format = samples == 3 ? QImage::Format_RGB888 : QImage::Format_Grayscale8;
    const QImage packed = image.convertToFormat(format);
    if (packed.isNull())
        throw std::bad_alloc();
    const PTiffTags tags{packed.width(), packed.height(), samples, packed.height(), text, picture};
    const bool done =
        file.write([&](TIFF* tiff) { return tags.writeTo(tiff) && writeRows(tiff, packed); });
    return done ? file.bytes() : QByteArray();
}
