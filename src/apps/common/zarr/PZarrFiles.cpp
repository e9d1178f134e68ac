// SPDX-License-Identifier: MIT
#include <apps/common/zarr/PZarrFiles.h>

#include <apps/common/file/PFileRoom.h>

#include <PCore/file/PWholeFile.h>

#include <QFile>

#include <sys/stat.h>

#include <cerrno>
#include <cstdio>

namespace {

// Beside the file that it will replace. There is only one writer.
const QString replacementEnding = u".part"_qs;

// Below, it takes longer than what it saves.
constexpr qsizetype worthReserving = 1 << 20;
constexpr mode_t everyRight = 0777; // minus the permissions in the user's mask

/// The result of a system call that returns -1 with the reason in errno.
PStatus systemResult(int result) {
    return result == 0 ? PStatus() : PStatus::failure(qt_error_string(errno));
}

} // namespace

PStatus PZarrFiles::create(const QString& path, const char* bytes, qsizetype count) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered))
        return PStatus::failure(file.errorString());
    if (count >= worthReserving)
        PFileRoom::reserve(file.handle(), 0, count);
    const bool written = PWholeFile::writeAll(file, QByteArray::fromRawData(bytes, count));
    QString reason = written ? QString() : file.errorString(); // which closing it forgets
    file.close();
    if (file.error() != QFileDevice::NoError)
        reason = file.errorString();
    if (reason.isEmpty())
        return PStatus::Ok;
    file.remove();
    return PStatus::failure(reason);
}

PStatus PZarrFiles::replace(const QString& path, const QByteArray& bytes) {
    const QString part = path + replacementEnding;
    const PStatus made = create(part, bytes.constData(), bytes.size());
    if (!made.isOk())
        return made;
    const PStatus named = rename(part, path);
    if (!named.isOk())
        QFile::remove(part);
    return named;
}

PStatus PZarrFiles::makeFolder(const QString& path) {
    return systemResult(mkdir(QFile::encodeName(path).constData(), everyRight));
}

PStatus PZarrFiles::rename(const QString& from, const QString& to) {
    return systemResult(
        std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()));
}
