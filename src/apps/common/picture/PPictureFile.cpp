// SPDX-License-Identifier: MIT
#include <apps/common/picture/PPictureFile.h>

#include <apps/common/file/PExclusiveRename.h>
#include <apps/common/picture/PPngEncoder.h>
#include <apps/common/tiff/PTiffEncoder.h>

#include <PCore/PPrintableText.h>
#include <PCore/file/PWholeFile.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QScopeGuard>
#include <QUuid>

#include <unistd.h>

#include <algorithm>
#include <climits>
#include <functional>

namespace {

const QString pngEnding = u".png"_qs;

PStatus fileFailure(const QString& path, const QString& reason) {
    return PStatus::failure(PPictureFile::tr("cannot save \"%1\": %2").arg(path, reason));
}

bool hasEnding(const QString& path, const QString& ending) {
    return path.endsWith(ending, Qt::CaseInsensitive);
}

/// Writes the picture to an open file. False if the file cannot be written, which it reports
/// itself, or if the format does not hold the picture.
using PictureWriter = std::function<bool(QFileDevice&)>;

PictureWriter pngWriter(const QImage& image, const PPictureNotes& notes,
                        PPngEncoder::Content content) {
    return [&image, &notes, content](QFileDevice& file) {
        const QByteArray bytes = PPngEncoder::encode(image, notes, content);
        return !bytes.isEmpty() && PWholeFile::writeAll(file, bytes);
    };
}

PictureWriter tiffWriter(const QImage& image, const PPictureNotes& notes) {
    return [&image, &notes](QFileDevice& file) {
        QStringList lines;
        for (const auto& [key, value] : notes.text)
            lines.append(PPrintableText::toLine(key + u": "_qs + value));
        return PTiffEncoder::write(file, image, lines.join(u'\n'), notes.tags);
    };
}

PStatus write(QFileDevice& file, const QString& path, const PictureWriter& writer) {
    if (writer(file))
        return PStatus::Ok;
    return fileFailure(path, file.error() == QFileDevice::NoError
                                 ? PPictureFile::tr("the picture cannot be stored in this format")
                                 : file.errorString());
}

PStatus replaceFile(const QString& path, const PictureWriter& writer) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return fileFailure(path, file.errorString());
    const PStatus status = write(file, path, writer);
    if (!status.isOk() || file.commit())
        return status;
    return fileFailure(path, file.errorString());
}

/// The bytes that a file's name can have in this folder.
qsizetype longestName(const QString& folder) {
    const long limit = ::pathconf(QFile::encodeName(folder).constData(), _PC_NAME_MAX);
    return limit > 0 ? qsizetype(limit) : NAME_MAX;
}

PStatus checkLength(const QString& path) {
    const QFileInfo file(path);
    const qsizetype bytes = QFile::encodeName(file.fileName()).size();
    const qsizetype most = longestName(file.absolutePath()) - PWholeFile::temporarySuffix;
    if (bytes <= most)
        return PStatus::Ok;
    return fileFailure(path, PPictureFile::tr("its name has %1 bytes: expected at most %2")
                                 .arg(QString::number(bytes), QString::number(most)));
}

/// A unique name in the same folder: another program may be saving under the same one.
QString partName(const QString& path) {
    const QFileInfo file(path);
    const QString unique = u".%1.part"_qs.arg(QUuid::createUuid().toString(QUuid::Id128));
    QString name = file.fileName();
    while (QFile::encodeName(name + unique).size() > longestName(file.absolutePath()))
        name.chop(1);
    return file.dir().filePath(name + unique);
}

/// Not with QSaveFile: its last step replaces a file that has appeared under the name meanwhile.
PStatus createFile(const QString& path, const PictureWriter& writer) {
    QFile file(partName(path));
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered))
        return fileFailure(path, file.errorString());
    auto removePart = qScopeGuard([&] { file.remove(); });
    const PStatus status = write(file, path, writer);
    if (!status.isOk())
        return status;
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
    return checkLength(path);
}

PStatus PPictureFile::save(const QString& path, const QImage& image, const PPictureNotes& notes,
                           Existing existing, Content content) {
    const PictureWriter writer =
        hasEnding(path, pngEnding) ? pngWriter(image, notes, content) : tiffWriter(image, notes);
    return existing == Existing::Replace ? replaceFile(path, writer) : createFile(path, writer);
}
