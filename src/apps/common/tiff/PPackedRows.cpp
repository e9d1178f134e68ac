// SPDX-License-Identifier: MIT
#include <apps/common/tiff/PPackedRows.h>

#include <cstring>
#include <new>

namespace {

void copyRow(const uchar* from, uchar* to, int pixels, QImage::Format format) {
    if (format != QImage::Format_BGR888) {
        std::memcpy(to, from, std::size_t(pixels) * (format == QImage::Format_RGB888 ? 3 : 1));
        return;
    }
    for (const uchar* const end = from + std::ptrdiff_t(pixels) * 3; from < end; from += 3) {
        to[0] = from[2];
        to[1] = from[1];
        to[2] = from[0];
        to += 3;
    }
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
    const int width = packable.width();
    const std::size_t rowBytes = std::size_t(width) * std::size_t(sampleCount(packable));
    const bool isPacked = packable.bytesPerLine() == qsizetype(rowBytes);
    if (isPacked && packable.format() != QImage::Format_BGR888)
        return packable.constScanLine(first);
    buffer.resize(rowBytes * std::size_t(rows));
    for (int y = 0; y < rows; ++y)
        copyRow(packable.constScanLine(first + y), buffer.data() + std::size_t(y) * rowBytes, width,
                packable.format());
    return buffer.data();
}
