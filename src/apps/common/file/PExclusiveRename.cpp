// SPDX-License-Identifier: MIT
#include <apps/common/file/PExclusiveRename.h>

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace {

int reason(int result) {
    return result == 0 ? 0 : errno;
}

/// True if this error means that the file system does not support the step. FAT returns EPERM for
/// links (link(2)), NFS and FUSE return EINVAL for renameat2's flags (rename(2)).
bool isUnsupported(int error) {
    return error == EINVAL || error == ENOSYS || error == EOPNOTSUPP || error == EPERM;
}

} // namespace

int PExclusiveRename::byRename(const QByteArray& from, const QByteArray& to) {
    return reason(
        renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE));
}

int PExclusiveRename::byLink(const QByteArray& from, const QByteArray& to) {
    if (link(from.constData(), to.constData()) != 0)
        return errno;
    unlink(from.constData()); // if this fails, the file has two names, one of them the right one
    return 0;
}

int PExclusiveRename::byPlaceholder(const QByteArray& from, const QByteArray& to) {
    const int placeholder = open(to.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (placeholder < 0)
        return errno;
    close(placeholder);
    const int failed = reason(rename(from.constData(), to.constData()));
    if (failed != 0)
        unlink(to.constData());
    return failed;
}

int PExclusiveRename::byEmptyFolder(const QByteArray& from, const QByteArray& to) {
    if (mkdir(to.constData(), 0700) != 0)
        return errno;
    const int failed = reason(rename(from.constData(), to.constData()));
    if (failed != 0)
        rmdir(to.constData());
    return failed;
}

int PExclusiveRename::name(const QString& from, const QString& to, const std::vector<Step>& steps) {
    int error = ENOSYS;
    for (const Step step : steps) {
        error = step(QFile::encodeName(from), QFile::encodeName(to));
        if (!isUnsupported(error))
            break;
    }
    return error;
}
