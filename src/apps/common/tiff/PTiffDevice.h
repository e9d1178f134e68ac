// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/tiff/PTiffStream.h>

class QFileDevice;

/// An open file that libtiff writes through Qt; the reason of a failure is in the file's
/// errorString(). It is not read. One thread.
class PTiffDevice : public PTiffStream {
public:
    /// The file must be open for writing without a buffer, and outlive this object.
    explicit PTiffDevice(QFileDevice& file)
        : m_file(file) {}

    /// Adds zeros until the file's size is a multiple of this. libtiff continues behind them, and
    /// the system copies to whole pages faster. False if they cannot be written.
    bool padTo(qint64 multiple);
    /// Reserves room on the disk for the next bytes at the end; see PFileRoom.
    void reserve(qint64 count);

protected:
    qint64 read(qint64 offset, void* bytes, qint64 count) noexcept override;
    bool write(qint64 offset, const void* bytes, qint64 count) noexcept override;
    qint64 size() const noexcept override;

private:
    QFileDevice& m_file;
};
