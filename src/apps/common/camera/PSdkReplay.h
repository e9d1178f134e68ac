// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PStatus.h>

#include <QJsonObject>
#include <QString>
#include <QStringList>

/// A trace that takes the place of the SDK: a library answers all calls as they were answered when
/// it was recorded. The main thread.
class PSdkReplay {
public:
    /// Reads the trace, once in a process. Fails with the file, the line and what was expected.
    PStatus load(const QString& file);

    /// The library to load as the SDK, see PCameraSdk::load().
    const QString& library() const { return m_path; }
    /// The program that was traced.
    QString program() const { return m_header.value(u"program"_qs).toString(); }
    /// Its arguments, without its name.
    QStringList arguments() const;

    /// How the replay went.
    struct Report {
        qint64 calls = 0;        ///< answered
        QStringList divergences; ///< where the program did something else than in the trace
        QString notice;          ///< what the user should know about the files; empty: nothing
    };
    /// Once the program has made its last call: it also reports the calls that are missing.
    Report report() const;

private:
    void* m_library = nullptr;
    QString m_path;
    QJsonObject m_header;
};
