// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The speed of the disk without any overhead.
class PlainWrite {
public:
    /// The seconds for writing a new file of this size into this folder, in pieces as large as
    /// those of a recording and, as with a recording, without synchronising the disk. The file is
    /// removed. 0 if it cannot be written.
    static double seconds(const QString& folder, qint64 bytes);

    /// Synchronises the file system of this folder, so that earlier writes do not slow down the
    /// next ones.
    static void settle(const QString& folder);
};
