// SPDX-License-Identifier: MIT
#include <apps/common/tiff/PTiffStrips.h>

#include <apps/common/tiff/PPackedRows.h>

#include <algorithm>

namespace {

// Small enough to stay in the processor's cache between being packed and being written.
constexpr int stripBytes = 512 * 1024;

} // namespace

/// At least two strips per picture: libtiff splits a single strip when the text is replaced, and
/// some readers reject a file whose first picture has a different strip layout.
int PTiffStrips::rowCount(const QImage& picture) {
    const int most = std::max(1, (picture.height() + 1) / 2);
    const qint64 rowBytes = qint64(picture.width()) * PPackedRows::sampleCount(picture);
    return int(std::clamp<qint64>(stripBytes / rowBytes, 1, most));
}

bool PTiffStrips::write(TIFF* tiff, const QImage& picture, std::vector<uchar>& buffer) {
    const QImage source = PPackedRows::packable(picture);
    const int rowsPerStrip = rowCount(source);
    uint32_t strip = 0;
    for (int y = 0; y < source.height(); y += rowsPerStrip) {
        const int rows = std::min(rowsPerStrip, source.height() - y);
        const uchar* const bytes = PPackedRows::pack(source, y, rows, buffer);
        const tmsize_t size = tmsize_t(source.width()) * PPackedRows::sampleCount(source) * rows;
        // libtiff only reads the strip, but its interface lacks const.
        if (TIFFWriteRawStrip(tiff, strip++, const_cast<uchar*>(bytes), size) != size)
            return false;
    }
    return true;
}
