// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

/// A part of a PNG file that Qt does not write. Any thread.
class PPngChunk {
public:
    /// The file with a chunk inserted after its header. The type has four letters.
    static QByteArray inserted(QByteArray png, const QByteArray& type, const QByteArray& data);
};
