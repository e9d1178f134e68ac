// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PStatus.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QString>

/// How files are named: a text in which {camera}, {date} and {time} are replaced by their values
/// and {n} by the first number that gives an unused name. A value type; any thread.
class PNamePattern {
    Q_DECLARE_TR_FUNCTIONS(PNamePattern)

public:
    /// Camera, date and time.
    PNamePattern();

    /// Sets another text. Fails with the error, changing nothing: it must be the name of a file,
    /// without its ending or a folder, and with no other placeholders.
    PStatus setText(const QString& text);
    const QString& text() const { return m_text; }

    /// The name, without extension, for this attempt (from 1) to find an unused one: if the text
    /// has no {n}, the number is appended from the second attempt on.
    QString name(const QString& camera, const QDateTime& time, int number) const;

private:
    QString m_text;
};
