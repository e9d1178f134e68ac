// SPDX-License-Identifier: MIT
#include <apps/common/picture/PPictureFile.h>

#include <apps/common/picture/PExclusiveRename.h>
#include <apps/common/picture/PPngEncoder.h>
#include <apps/common/tiff/PTiffEncoder.h>

#include <PCore/file/PWholeFile.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>
#include <QUuid>

#include <algorithm>

namespace {

const QString pngEnding = u".png"_qs;

PStatus fileFailure(const QString& path, const QString& reason) {
    return PStatus::failure(PPictureFile::tr("cannot save \"%1\": %2").arg(path, reason));
}

bool hasEnding(const QString& path, const QString& ending) {
    return path.endsWith(ending, Qt::CaseInsensitive);
}

QByteArray encodeTiff(const QImage& image, const PPictureNotes& notes) {
    QStringList lines;
    for (const auto& [key, value] : notes.text)
        lines.append(key + u": "_qs + value);
    return PTiffEncoder::encode(image, lines.join(u'\n'), notes.tags);
}

QByteArray encode(const QString& path, const QImage& image, const PPictureNotes& notes,
                  PPngEncoder::Content content) {
    return hasEnding(path, pngEnding) ? PPngEncoder::encode(image, notes, content)
                                      : encodeTiff(image, notes);
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
                           Existing existing, Content content) {
    // Encoded in memory first, to distinguish failures of the disk from failures of the format.
    const QByteArray bytes = encode(path, image, notes, content);
    if (bytes.isEmpty())
        return fileFailure(path, tr("the picture cannot be stored in this format"));
    return existing == Existing::Replace ? replaceFile(path, bytes) : createFile(path, bytes);
}
