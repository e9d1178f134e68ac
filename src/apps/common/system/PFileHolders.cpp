// SPDX-License-Identifier: MIT
#include <apps/common/system/PFileHolders.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace {

bool hasOpen(const QString& process, const QString& file) {
    const QDir descriptors(process + u"/fd"_qs);
    // With QDir::System, because the link to a device file leads to neither a file nor a folder.
    for (const QFileInfo& descriptor :
         descriptors.entryInfoList(QDir::Files | QDir::System | QDir::NoDotAndDotDot)) {
        if (descriptor.symLinkTarget() == file)
            return true;
    }
    return false;
}

} // namespace

QList<PFileHolder> PFileHolders::find(const PSystemTree& system, const QString& file) {
    const QString wanted = QFileInfo(file).absoluteFilePath();
    QList<PFileHolder> found;
    const QDir processes(system.path(u"proc"_qs));
    for (const QString& name : processes.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        bool isProcess = false;
        const qint64 process = name.toLongLong(&isProcess);
        if (!isProcess || process == QCoreApplication::applicationPid())
            continue;
        if (hasOpen(processes.filePath(name), wanted))
            found.append({process, system.readText(u"proc/%1/comm"_qs.arg(name))});
    }
    return found;
}
