// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonObject>
#include <QList>
#include <QString>

/// One thing that was examined, what was found, and what helps. A value; any thread.
struct PFinding {
    /// From good to bad.
    enum class Severity { Ok, Note, Warning, Error };

    Severity severity = Severity::Ok;
    QString topic;    ///< a key that does not change: "usb-access"
    QString examined; ///< in plain words, such as the name of a file or device
    QString found;
    QString fix; ///< in one line; empty if there is nothing to do

    /// "ok", "note", "warning" or "error".
    static QString severityName(Severity severity);
    /// The worst severity; ok without findings.
    static Severity findWorst(const QList<PFinding>& findings);

    /// {severity, topic, examined, found}, and fix if there is one.
    QJsonObject toJson() const;
    /// One line, and a second one if there is a fix.
    QString toText() const;
};
