// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PStatus.h>

#include <QByteArray>
#include <QString>

/// The text of a scene for the simulated SDK, as it lies in a file. A value.
class PSceneFile {
public:
    /// Reads the file. Relative paths of pictures in it are meant from its folder, so they are made
    /// absolute; what the text is worth otherwise is for the SDK to say.
    explicit PSceneFile(const QString& path);

    /// Fails with the file and why it cannot be read.
    const PStatus& status() const { return m_status; }
    const QByteArray& text() const { return m_text; }

private:
    PStatus m_status;
    QByteArray m_text;
};
