// SPDX-License-Identifier: MIT
#include <apps/common/tiff/PTiffExif.h>

#include <apps/common/tiff/PTiffMemory.h>

namespace {

/// Sets a tag unless the text is empty. False if libtiff refuses it.
bool setText(TIFF* tiff, uint32_t tag, const QByteArray& text) {
    return text.isEmpty() || TIFFSetField(tiff, tag, text.constData()) != 0;
}

/// "+03:00".
QByteArray offsetText(const QDateTime& taken) {
    const QDateTime local = taken.toLocalTime();
    const QString iso = local.toOffsetFromUtc(local.offsetFromUtc()).toString(Qt::ISODate);
    return iso.endsWith(u'Z') ? QByteArrayLiteral("+00:00") : iso.right(6).toLatin1();
}

bool setTime(TIFF* tiff, const PPictureTags& tags) {
    if (!tags.taken.isValid())
        return true;
    return setText(tiff, EXIFTAG_DATETIMEORIGINAL, tags.takenText()) &&
           setText(tiff, EXIFTAG_SUBSECTIMEORIGINAL, tags.taken.toString(u"zzz"_qs).toLatin1()) &&
           setText(tiff, EXIFTAG_OFFSETTIMEORIGINAL, offsetText(tags.taken));
}

bool setExposure(TIFF* tiff, const PPictureTags& tags) {
    constexpr int automatic = 0, manual = 1;
    return !tags.exposureSeconds ||
           (TIFFSetField(tiff, EXIFTAG_EXPOSURETIME, *tags.exposureSeconds) &&
            TIFFSetField(tiff, EXIFTAG_EXPOSUREMODE, tags.isAutomatic ? automatic : manual));
}

/// Sets the tags that every EXIF directory must have.
bool setVersions(TIFF* tiff) {
    constexpr int uncalibrated = 0xffff;
    return TIFFSetField(tiff, EXIFTAG_EXIFVERSION, "0232") &&
           TIFFSetField(tiff, EXIFTAG_FLASHPIXVERSION, "0100") &&
           TIFFSetField(tiff, EXIFTAG_COLORSPACE, uncalibrated);
}

/// Writes the EXIF directory and begins that of the picture.
bool endExif(TIFF* tiff, uint64_t& offset) {
    const bool isWritten = TIFFWriteCustomDirectory(tiff, &offset) != 0;
    // Unlike TIFFWriteDirectory(), it leaves the values in place, and the next directory would
    // begin with them.
    TIFFFreeDirectory(tiff);
    return isWritten && TIFFCreateDirectory(tiff) == 0;
}

bool setResolution(TIFF* tiff, const PPictureTags& tags) {
    if (!tags.pixelSizeUm)
        return true;
    const double pixelsPerCm = 1e4 / *tags.pixelSizeUm;
    return TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_CENTIMETER) &&
           TIFFSetField(tiff, TIFFTAG_XRESOLUTION, pixelsPerCm) &&
           TIFFSetField(tiff, TIFFTAG_YRESOLUTION, pixelsPerCm);
}

} // namespace

bool PTiffExif::writeTo(TIFF* tiff, const PPictureTags& tags) {
    if (tags.isEmpty())
        return true;
    uint64_t exif = 0;
    return TIFFCreateEXIFDirectory(tiff) == 0 && setVersions(tiff) && setTime(tiff, tags) &&
           setExposure(tiff, tags) && setText(tiff, EXIFTAG_BODYSERIALNUMBER, tags.serial) &&
           endExif(tiff, exif) && setText(tiff, TIFFTAG_MAKE, tags.make) &&
           setText(tiff, TIFFTAG_MODEL, tags.model) &&
           setText(tiff, TIFFTAG_SOFTWARE, tags.software) &&
           setText(tiff, TIFFTAG_DATETIME, tags.taken.isValid() ? tags.takenText() : "") &&
           setResolution(tiff, tags) && TIFFSetField(tiff, TIFFTAG_EXIFIFD, exif);
}

QByteArray PTiffExif::block(const PPictureTags& tags) {
    if (tags.isEmpty())
        return {};
    // The block is a TIFF file without a picture.
    PTiffMemory memory;
    const bool done = memory.write(
        [&](TIFF* tiff) { return writeTo(tiff, tags) && TIFFWriteDirectory(tiff) != 0; });
    return done ? memory.bytes() : QByteArray();
}
