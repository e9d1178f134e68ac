// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PStatus.h>

#include <QByteArray>
#include <QString>

/// The text of a scene file for the simulated SDK. A value type.
class PSceneFile {
public:
    /// Reads the file. Relative picture paths refer to its folder, so they are made absolute; the
    /// SDK checks everything else.
    explicit PSceneFile(const QString& path);

    /// Fails with the file and why it cannot be read.
    const PStatus& status() const { return m_status; }
    const QByteArray& text() const { return m_text; }

private:
    PStatus m_status;
    QByteArray m_text;
};
