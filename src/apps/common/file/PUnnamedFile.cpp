// SPDX-License-Identifier: MIT
#include <apps/common/file/PUnnamedFile.h>

#include <apps/common/file/PExclusiveRename.h>

#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace {

constexpr mode_t everybody = 0666; // minus the permissions in the user's mask

/// Where the kernel offers the file of a descriptor for linking (open(2), O_TMPFILE).
QByteArray linkSource(int descriptor) {
    return "/proc/self/fd/" + QByteArray::number(descriptor);
}

bool exists(const QString& path) {
    struct stat found {};
    return lstat(QFile::encodeName(path).constData(), &found) == 0;
}

/// -1 where the file could not be given a name later.
int openUnnamed(const QString& folder) {
    const int descriptor =
        open(QFile::encodeName(folder).constData(), O_TMPFILE | O_RDWR | O_CLOEXEC, everybody);
    if (descriptor < 0 || access(linkSource(descriptor).constData(), F_OK) == 0)
        return descriptor;
    close(descriptor);
    return -1;
}

} // namespace

PUnnamedFile::~PUnnamedFile() {
    if (!m_hidden.isEmpty())
        QFile::remove(m_hidden);
}

int PUnnamedFile::create(const QString& path, Before before) {
    m_path = path;
    if (exists(path)) {
        errno = EEXIST;
        return -1;
    }
    const QString folder = QFileInfo(path).path();
    const int unnamed = before == Before::Unnamed ? openUnnamed(folder) : -1;
    if (unnamed >= 0)
        return unnamed;
    m_hidden = u"%1/.%2.part"_qs.arg(folder, QUuid::createUuid().toString(QUuid::Id128));
    const int descriptor = open(QFile::encodeName(m_hidden).constData(),
                                O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, everybody);
    if (descriptor < 0)
        m_hidden.clear();
    return descriptor;
}

int PUnnamedFile::giveName(int descriptor) {
    int error = 0;
    if (!m_hidden.isEmpty())
        error = PExclusiveRename::name(m_hidden, m_path);
    else if (linkat(AT_FDCWD, linkSource(descriptor).constData(), AT_FDCWD,
                    QFile::encodeName(m_path).constData(), AT_SYMLINK_FOLLOW) != 0)
        error = errno;
    m_hasName = error == 0;
    if (m_hasName)
        m_hidden.clear();
    return error;
}
