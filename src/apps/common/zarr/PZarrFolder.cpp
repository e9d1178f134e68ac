// SPDX-License-Identifier: MIT
#include <apps/common/zarr/PZarrFolder.h>

#include <apps/common/file/PExclusiveRename.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include <sys/stat.h>

#include <cerrno>

namespace {

constexpr mode_t allRights = 0777; // minus the permissions in the user's mask

PStatus errnoFailure(int error) {
    return error == 0 ? PStatus() : PStatus::failure(qt_error_string(error));
}

} // namespace

PStatus PZarrFolder::create(const QString& path) {
    const QFileInfo wanted(path);
    if (wanted.exists() || wanted.isSymLink())
        return errnoFailure(EEXIST);
    const QString hidden =
        u"%1/.%2.part"_qs.arg(wanted.path(), QUuid::createUuid().toString(QUuid::Id128));
    if (mkdir(QFile::encodeName(hidden).constData(), allRights) != 0)
        return errnoFailure(errno);
    m_path = path;
    m_now = hidden;
    return PStatus::Ok;
}

void PZarrFolder::discard() {
    if (!isCreated() || hasName())
        return;
    QDir(m_now).removeRecursively();
    m_now.clear();
}

PStatus PZarrFolder::giveName() {
    const int error = PExclusiveRename::name(m_now, m_path, PExclusiveRename::folderSteps());
    if (error == 0)
        m_now = m_path;
    return errnoFailure(error);
}
