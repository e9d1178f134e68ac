// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PStatus.h>

#include <QString>

/// A series of file names with numbers: "run/frame-####.png" is run/frame-0001.png and so on. A
/// value type; one thread.
class PFileSequence {
public:
    PFileSequence() = default;

    /// Sets a pattern with one run of '#' in the file's name; the run's length is the minimum
    /// number of digits. Fails, naming the pattern and what was expected.
    PStatus setPattern(const QString& pattern);

    /// The name of one file; the first has the number 1.
    QString path(quint64 number) const;

    /// The first of the files with the numbers 1 to `last` that exists, or an empty text. Reads the
    /// folder once.
    QString firstExisting(quint64 last) const;

private:
    quint64 toNumber(const QString& path) const;

    QString m_before;
    QString m_after;
    int m_digits = 0;
};
