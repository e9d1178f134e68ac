// SPDX-License-Identifier: MIT
#include <apps/common/file/PResultFile.h>

#include <PCore/file/PWholeFile.h>

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace {

PStatus resultFailure(const QString& path, const QString& reason) {
    return PStatus::failure(u"cannot write \"%1\": %2"_qs.arg(path, reason));
}

/// The errno for a name that is too long while the file is written; 0 if it fits.
int findLengthError(const QFileInfo& file, const QByteArray& folder) {
    const long limit = ::pathconf(folder.constData(), _PC_NAME_MAX);
    const qsizetype bytes = QFile::encodeName(file.fileName()).size();
    return limit > 0 && bytes + PWholeFile::temporarySuffix > limit ? ENAMETOOLONG : 0;
}

} // namespace

PStatus PResultFile::check(const QString& path) {
    const QFileInfo file(path);
    // Writing would replace a device or pipe by a file of that name.
    if (file.exists() && !file.isFile())
        return resultFailure(path, u"it is not a file"_qs);
    const QByteArray folder = QFile::encodeName(file.absolutePath());
    if (::faccessat(AT_FDCWD, folder.constData(), W_OK | X_OK, AT_EACCESS) != 0)
        return resultFailure(path, qt_error_string(errno));
    const int error = findLengthError(file, folder);
    return error == 0 ? PStatus(PStatus::Ok) : resultFailure(path, qt_error_string(error));
}

PStatus PResultFile::write(const QString& path, const QByteArray& bytes) {
    const PStatus possible = check(path);
    if (!possible.isOk())
        return possible;
    const PStatus written = PWholeFile::replace(path, bytes);
    return written.isOk() ? written : resultFailure(path, written.reason());
}
