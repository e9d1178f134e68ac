// SPDX-License-Identifier: MIT
#include <apps/common/tiff/PTiffDevice.h>

#include <apps/common/file/PFileRoom.h>

#include <PCore/file/PWholeFile.h>

#include <QFileDevice>

#include <new>

/// A new file with one picture is written from beginning to end, and its header once more.
qint64 PTiffDevice::read(qint64, void*, qint64) noexcept {
    return -1;
}

bool PTiffDevice::write(qint64 offset, const void* bytes, qint64 count) noexcept {
    try {
        return (m_file.pos() == offset || m_file.seek(offset)) &&
               PWholeFile::writeAll(
                   m_file, QByteArray::fromRawData(static_cast<const char*>(bytes), count));
    } catch (const std::bad_alloc&) {
        return false;
    }
}

bool PTiffDevice::padTo(qint64 multiple) {
    const QByteArray zeros(qsizetype((multiple - size() % multiple) % multiple), '\0');
    return write(size(), zeros.constData(), zeros.size());
}

void PTiffDevice::reserve(qint64 count) {
    PFileRoom::reserve(m_file.handle(), size(), count);
}

qint64 PTiffDevice::size() const noexcept {
    return m_file.size();
}
