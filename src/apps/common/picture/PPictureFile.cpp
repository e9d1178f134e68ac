// SPDX-License-Identifier: MIT
#include <apps/common/picture/PPictureFile.h>

#include <apps/common/picture/PExclusiveRename.h>
#include <apps/common/picture/PPngChunk.h>
#include <apps/common/tiff/PTiffEncoder.h>
#include <apps/common/tiff/PTiffExif.h>

#include <PCore/file/PWholeFile.h>

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImageWriter>
#include <QScopeGuard>
#include <QUuid>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

const QString pngEnding = u".png"_qs;

PStatus fileFailure(const QString& path, const QString& reason) {
    return PStatus::failure(PPictureFile::tr("cannot save \"%1\": %2").arg(path, reason));
}

bool hasEnding(const QString& path, const QString& ending) {
    return path.endsWith(ending, Qt::CaseInsensitive);
}

/// For QImage, which otherwise has the resolution of the screen. If the size is unknown, a negative
/// number, for which no resolution is saved.
int pixelsPerMetre(const PPictureTags& tags) {
    const double pixels = tags.pixelSizeUm ? 1e6 / *tags.pixelSizeUm : -1;
    return pixels > 0 && pixels <= std::numeric_limits<int>::max() ? int(std::lround(pixels)) : -1;
}

/// The same pixels with text in the image: QImageWriter::setText() loses keys with blanks.
QImage withNotes(const QImage& image, const PPictureNotes& notes) {
    // Pixels that may be written are not copied when the text is set; nothing writes them.
    QImage result(const_cast<uchar*>(image.constBits()), image.width(), image.height(),
                  image.bytesPerLine(), image.format());
    result.setColorTable(image.colorTable());
    for (const auto& [key, value] : notes.text)
        result.setText(key, value);
    result.setDotsPerMeterX(pixelsPerMetre(notes.tags));
    result.setDotsPerMeterY(pixelsPerMetre(notes.tags));
    return result;
}

QByteArray encodePng(const QImage& image, const PPictureNotes& notes, PPictureFile::Effort effort) {
    QBuffer buffer;
    QImageWriter writer(&buffer, "png");
    // Qt computes zlib's level from the quality: (100 - quality) * 9 / 91, so 80 is level 1, the
    // fastest that still compresses.
    if (effort == PPictureFile::Effort::Fast)
        writer.setQuality(80);
    if (!writer.write(withNotes(image, notes)))
        return {};
    buffer.close();
    const QByteArray exif = PTiffExif::block(notes.tags);
    return exif.isEmpty() ? buffer.data() : PPngChunk::inserted(buffer.data(), "eXIf", exif);
}

QByteArray encodeTiff(const QImage& image, const PPictureNotes& notes) {
    QStringList lines;
    for (const auto& [key, value] : notes.text)
        lines.append(key + u": "_qs + value);
    return PTiffEncoder::encode(image, lines.join(u'\n'), notes.tags);
}

QByteArray encode(const QString& path, const QImage& image, const PPictureNotes& notes,
                  PPictureFile::Effort effort) {
    return hasEnding(path, pngEnding) ? encodePng(image, notes, effort) : encodeTiff(image, notes);
}

PStatus replaceFile(const QString& path, const QByteArray& bytes) {
    const PStatus status = PWholeFile::replace(path, bytes);
    return status.isOk() ? status : fileFailure(path, status.reason());
}

/// Not PWholeFile::replace(): its last step replaces a file that has appeared under the name
/// meanwhile.
PStatus createFile(const QString& path, const QByteArray& bytes) {
    // A unique name: another program may be saving under the same one.
    QFile file(u"%1.%2.part"_qs.arg(path, QUuid::createUuid().toString(QUuid::Id128)));
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered))
        return fileFailure(path, file.errorString());
    auto removePart = qScopeGuard([&] { file.remove(); });
    if (!PWholeFile::writeAll(file, bytes))
        return fileFailure(path, file.errorString());
    if (const int error = PExclusiveRename::name(file.fileName(), path))
        return fileFailure(path, qt_error_string(error));
    removePart.dismiss();
    return PStatus::Ok;
}

} // namespace

QStringList PPictureFile::endings() {
    return {pngEnding, u".tif"_qs, u".tiff"_qs};
}

PStatus PPictureFile::checkName(const QString& path) {
    const QStringList known = endings();
    if (std::any_of(known.begin(), known.end(),
                    [&](const QString& ending) { return hasEnding(path, ending); }))
        return PStatus::Ok;
    return PStatus::failure(
        tr("\"%1\" is not the name of a picture file: expected a name that ends in %2")
            .arg(path, known.join(u", "_qs)));
}

PStatus PPictureFile::prepareFolder(const QString& path) {
    const QFileInfo file(path);
    const QString folder = file.absolutePath();
    if (file.isDir())
        return fileFailure(path, tr("it is a folder"));
    if (file.exists() && !file.isFile())
        return fileFailure(path, tr("it is not a file"));
    if (!QDir().mkpath(folder))
        return fileFailure(path, tr("the folder \"%1\" cannot be created").arg(folder));
    if (!QFileInfo(folder).isWritable())
        return fileFailure(path, tr("the folder \"%1\" cannot be written to").arg(folder));
    return PStatus::Ok;
}

PStatus PPictureFile::save(const QString& path, const QImage& image, const PPictureNotes& notes,
                           Existing existing, Effort effort) {
    // Encoded in memory first, to distinguish failures of the disk from failures of the format.
    const QByteArray bytes = encode(path, image, notes, effort);
    if (bytes.isEmpty())
        return fileFailure(path, tr("the picture cannot be stored in this format"));
    return existing == Existing::Replace ? replaceFile(path, bytes) : createFile(path, bytes);
}
