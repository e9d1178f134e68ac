// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

/// How much a record matters. Records of PLog::logStream are Info unless the caller says otherwise.
enum class PLogLevel { Debug, Info, Warning, Error, Off };

/// One line of the log.
struct PLogRecord {
    QDateTime time; ///< UTC
    PLogLevel level = PLogLevel::Info;
    QString source;    ///< who speaks, for example "PTDevice"
    QString function;  ///< signature of the calling function
    QString file;      ///< source path
    int line = 0;      ///< source line
    QStringList items; ///< what was appended, in order

    /// The items with one blank between them.
    QString text() const { return items.join(u' '); }
};
