// SPDX-License-Identifier: MIT
#include <apps/common/crash/PCrashFolder.h>

#include <QDir>

QString PCrashFolder::path() {
    // By the rules for these folders, a relative path is ignored.
    const QString given = qEnvironmentVariable("XDG_STATE_HOME");
    const QString state =
        QDir::isAbsolutePath(given) ? given : QDir::home().filePath(u".local/state"_qs);
    return QDir(state).filePath(u"pcd/crashes"_qs);
}

QStringList PCrashFolder::reports() {
    const QDir folder(path(), u"*.txt"_qs, QDir::Time, QDir::Files);
    QStringList paths;
    for (const QString& name : folder.entryList())
        paths.append(folder.filePath(name));
    return paths;
}

void PCrashFolder::removeOld() {
    for (const QString& report : reports().mid(mostReports))
        QFile::remove(report);
}
