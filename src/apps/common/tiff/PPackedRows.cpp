// SPDX-License-Identifier: MIT
#include <apps/common/tiff/PPackedRows.h>

#include <apps/common/tiff/PRedBlueSwap.h>

#include <cstring>
#include <new>

namespace {

void copyPixels(const uchar* from, uchar* to, std::size_t bytes, QImage::Format format) {
    if (format == QImage::Format_BGR888)
        PRedBlueSwap::fastest()(from, to, bytes / 3);
    else
        std::memcpy(to, from, bytes);
}

} // namespace

int PPackedRows::sampleCount(const QImage& picture) {
    return picture.format() == QImage::Format_Grayscale8 ? 1 : 3;
}

QImage PPackedRows::packable(const QImage& picture) {
    switch (picture.format()) {
    case QImage::Format_Grayscale8:
    case QImage::Format_RGB888:
    case QImage::Format_BGR888:
        return picture;
    default:
        break;
    }
    QImage converted = picture.convertToFormat(QImage::Format_RGB888);
    if (converted.isNull())
        throw std::bad_alloc();
    return converted;
}

const uchar* PPackedRows::pack(const QImage& packable, int first, int rows,
                               std::vector<uchar>& buffer) {
    const std::size_t rowBytes = std::size_t(packable.width()) * std::size_t(sampleCount(packable));
    const bool isPacked = packable.bytesPerLine() == qsizetype(rowBytes);
    const uchar* const from = packable.constScanLine(first);
    if (isPacked && packable.format() != QImage::Format_BGR888)
        return from;
    buffer.resize(rowBytes * std::size_t(rows));
    if (isPacked) {
        copyPixels(from, buffer.data(), buffer.size(), packable.format());
        return buffer.data();
    }
    for (int y = 0; y < rows; ++y)
        copyPixels(packable.constScanLine(first + y), buffer.data() + std::size_t(y) * rowBytes,
                   rowBytes, packable.format());
    return buffer.data();
}
