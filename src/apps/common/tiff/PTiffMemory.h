// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/tiff/PTiffStream.h>

#include <QByteArray>

#include <functional>

/// A TIFF file in memory, little-endian, at most 4 GiB. One thread.
class PTiffMemory : private PTiffStream {
public:
    /// Reserves this number of bytes; grows as needed.
    explicit PTiffMemory(qsizetype room = 0);

    /// Creates the file with a function that writes it through libtiff, and returns the function's
    /// result; false if libtiff cannot open it. Throws std::bad_alloc.
    bool write(const std::function<bool(tiff*)>& writer);

    /// The file that write() created; incomplete after a failure.
    const QByteArray& bytes() const { return m_bytes; }

private:
    qint64 read(qint64 offset, void* bytes, qint64 count) noexcept override;
    bool write(qint64 offset, const void* bytes, qint64 count) noexcept override;
    qint64 size() const noexcept override { return m_bytes.size(); }

    QByteArray m_bytes;
    bool m_outOfMemory = false;
};
