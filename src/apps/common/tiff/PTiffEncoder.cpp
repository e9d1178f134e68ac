// SPDX-License-Identifier: MIT
#include <apps/common/tiff/PTiffEncoder.h>

#include <apps/common/tiff/PPackedRows.h>
#include <apps/common/tiff/PTiffDevice.h>
#include <apps/common/tiff/PTiffStrips.h>
#include <apps/common/tiff/PTiffTags.h>

#include <new>

namespace {

constexpr qint64 pageBytes = 4096; // of the system's cache of files

qint64 countBytes(const QImage& image) {
    return qint64(image.width()) * image.height() * PPackedRows::sampleCount(image);
}

/// True if the largest possible size of rows, directory and text is below the format's 4 GiB.
bool fits(const QImage& image, const QByteArray& description) {
    constexpr qint64 directory = 65'536; // mostly where the strips are
    const qint64 pixels = countBytes(image);
    return pixels > 0 && pixels + description.size() + directory < qint64(1) << 32;
}

} // namespace

bool PTiffEncoder::write(QFileDevice& file, const QImage& image, const QString& description,
                         const PPictureTags& picture) {
    const QByteArray text = description.toUtf8();
    if (!fits(image, text))
        return false;
    const PTiffTags tags{image.width(),
                         image.height(),
                         PPackedRows::sampleCount(image),
                         PTiffStrips::rowCount(image),
                         text,
                         picture};
    std::vector<uchar> rows;
    PTiffDevice device(file);
    const PTiffStream::Handle tiff = device.open("wl", PTiffStream::AtClose::Dropped);
    if (!tiff || !tags.writeTo(tiff.get()) || !device.padTo(pageBytes))
        return false;
    device.reserve(countBytes(image));
    return PTiffStrips::write(tiff.get(), image, rows) && TIFFWriteDirectory(tiff.get()) != 0;
}
