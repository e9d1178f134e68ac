// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <tiffio.h>

#include <functional>

/// A TIFF file in memory, little-endian, not larger than 4 GiB. One thread.
class PTiffMemory {
public:
    /// Has room for that many bytes at once; it grows if it must.
    explicit PTiffMemory(qsizetype room = 0);

    /// Makes the file with a function that writes it through libtiff, and returns what that
    /// returns; false if there can be no file. Throws std::bad_alloc.
    bool write(const std::function<bool(TIFF*)>& writer);

    /// The file that write() made; incomplete after it failed.
    const QByteArray& bytes() const { return m_bytes; }

private:
    struct Calls;

    QByteArray m_bytes;
    toff_t m_position = 0;
    bool m_outOfMemory = false;
};
