// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// What the disk can do with nothing in its way.
class PlainWrite {
public:
    /// Seconds that writing a new file of so many bytes into this folder takes, in pieces as large
    /// as those of a recording; nothing is forced out to the disk's platters, as with a recording.
    /// The file is removed. 0 if it cannot be written.
    static double seconds(const QString& folder, qint64 bytes);

    /// Waits until nothing is left to be forced out to the file system of this folder, so that
    /// nothing written before slows down what is written next.
    static void settle(const QString& folder);
};
