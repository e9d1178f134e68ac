// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

/// Severity of a record. Records of PLog::logStream are Info unless the caller sets another level.
enum class PLogLevel { Debug, Info, Warning, Error, Off };

/// One line of the log.
struct PLogRecord {
    QDateTime time; ///< UTC
    PLogLevel level = PLogLevel::Info;
    QString source;    ///< the component, for example "PTDevice"
    QString function;  ///< signature of the calling function
    QString file;      ///< source path
    int line = 0;      ///< source line
    QStringList items; ///< the appended items, in order

    /// The items with one blank between them.
    QString text() const { return items.join(u' '); }
};
