// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QString>

#include <sys/stat.h>

/// What a file takes up on the disk, whatever its size is; -1 if there is none.
inline qint64 countBytesOnDisk(const QString& path) {
    struct stat status {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0
               ? qint64(status.st_blocks) * 512 // in this unit always: stat(2)
               : -1;
}
