// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QString>

/// A line on the standard error stream that is overwritten repeatedly, if that stream is a
/// terminal; else nothing. The main thread.
class PStatusLine {
public:
    PStatusLine();
    /// Clears the line.
    ~PStatusLine();
    PStatusLine(const PStatusLine&) = delete;
    PStatusLine& operator=(const PStatusLine&) = delete;

    /// True if it is time to show a new text. Cheap to call, unlike making the text.
    bool isDue() const;
    void show(const QString& text);
    /// Removes what is shown, so that something else can be printed.
    void clear();

    /// A bar for a share from 0 to 1: "[#####---------------]".
    static QString bar(double share);

private:
    bool m_isTerminal;
    bool m_isShown = false;
    QElapsedTimer m_sinceShown;
};
