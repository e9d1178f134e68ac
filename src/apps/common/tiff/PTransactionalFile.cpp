// SPDX-License-Identifier: MIT
#include <apps/common/tiff/PTransactionalFile.h>

#include <apps/common/file/PFileRoom.h>

#include <QString>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <utility>

namespace {

QString truncated() {
    return PTransactionalFile::tr("the file was truncated while it was being written");
}

/// The size of an open file; -1 if the system does not give it.
qint64 sizeOf(int descriptor) {
    struct stat now {};
    return fstat(descriptor, &now) == 0 ? qint64(now.st_size) : -1;
}

/// Copies into `bytes`, which begin at `offset`, the part of another piece that overlaps them.
void overlay(char* bytes, qint64 offset, qint64 count, qint64 pieceOffset,
             const QByteArray& piece) {
    const qint64 begin = std::max(offset, pieceOffset);
    const qint64 end = std::min(offset + count, pieceOffset + piece.size());
    if (begin < end)
        std::memcpy(bytes + (begin - offset), piece.constData() + (begin - pieceOffset),
                    std::size_t(end - begin));
}

} // namespace

PTransactionalFile::~PTransactionalFile() {
    close();
}

PStatus PTransactionalFile::create(const QString& path) {
    m_descriptor = m_name.create(path);
    return isOpen() ? PStatus() : PStatus::failure(qt_error_string(errno));
}

PStatus PTransactionalFile::giveName() {
    const int error = m_name.giveName(m_descriptor);
    return error == 0 ? PStatus() : PStatus::failure(qt_error_string(error));
}

PStatus PTransactionalFile::close() {
    if (!isOpen())
        return PStatus::Ok;
    rollBack();
    const QString damage = damageByOthers();
    const bool done = ::close(std::exchange(m_descriptor, -1)) == 0;
    if (!done)
        return PStatus::failure(qt_error_string(errno));
    return damage.isEmpty() ? PStatus() : PStatus::failure(damage);
}

/// What another program has done to the file; empty if nothing. Needed because writing to a removed
/// file succeeds.
QString PTransactionalFile::damageByOthers() const {
    struct stat now {};
    if (fstat(m_descriptor, &now) != 0)
        return qt_error_string(errno);
    if (!m_name.hasName())
        return QString();
    if (now.st_nlink == 0)
        return tr("the file was removed while it was being written");
    return now.st_size < m_wholeSize ? truncated() : QString();
}

void PTransactionalFile::reserve(qint64 count) {
    PFileRoom::reserve(m_descriptor, m_size, count);
}

bool PTransactionalFile::write(qint64 offset, const void* bytes, qint64 count) {
    if (m_failed)
        return false;
    const char* const from = static_cast<const char*>(bytes);
    // A piece that extends across the end of the last step is held back as a whole.
    const bool written =
        offset < m_wholeSize ? holdBack(offset, from, count) : writeNow(offset, from, count);
    if (written)
        m_size = std::max(m_size, offset + count);
    return written;
}

/// An exception would pass through the C library that writes.
bool PTransactionalFile::holdBack(qint64 offset, const char* bytes, qint64 count) {
    try {
        m_heldBack[offset] = QByteArray(bytes, count);
        return true;
    } catch (const std::bad_alloc&) {
        return fail(qt_error_string(ENOMEM));
    }
}

bool PTransactionalFile::writeNow(qint64 offset, const char* bytes, qint64 count) {
    // Writing beyond the end would fill the gap with zeros, and the file would look whole.
    if (isTruncated())
        return fail(truncated());
    while (count > 0) {
        const ssize_t written = ::pwrite(m_descriptor, bytes, std::size_t(count), offset);
        if (written < 0 && errno == EINTR)
            continue;
        // A disk that fills up first writes a part, and gives the reason only at the next attempt.
        if (written <= 0)
            return fail(qt_error_string(written < 0 ? errno : EIO));
        bytes += written;
        offset += written;
        count -= written;
    }
    m_sizeOnDisk = std::max(m_sizeOnDisk, offset);
    return true;
}

bool PTransactionalFile::isTruncated() const {
    const qint64 size = sizeOf(m_descriptor);
    return size >= 0 && size < m_sizeOnDisk;
}

bool PTransactionalFile::fail(const QString& reason) {
    m_failed = true;
    m_error = reason;
    return false;
}

qint64 PTransactionalFile::read(qint64 offset, void* bytes, qint64 count) const {
    char* const to = static_cast<char*>(bytes);
    qint64 done = 0;
    while (done < count) {
        const ssize_t got =
            ::pread(m_descriptor, to + done, std::size_t(count - done), offset + done);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return -1;
        if (got == 0)
            break;
        done += got;
    }
    for (const auto& [heldOffset, held] : m_heldBack)
        overlay(to, offset, done, heldOffset, held);
    return done;
}

bool PTransactionalFile::commit() {
    for (const auto& [offset, bytes] : m_heldBack) {
        if (!m_failed)
            writeNow(offset, bytes.constData(), bytes.size());
    }
    if (m_failed) {
        rollBack();
        return false;
    }
    m_heldBack.clear();
    m_wholeSize = m_size;
    return true;
}

void PTransactionalFile::rollBack() {
    m_heldBack.clear();
    m_failed = false;
    m_size = m_sizeOnDisk = m_wholeSize;
    // A file that another program has truncated would be filled up with zeros.
    if (sizeOf(m_descriptor) < m_wholeSize)
        return;
    // If the rest of a failed step cannot be cut off, it does no harm, as it is beyond the end.
    [[maybe_unused]] const int cut = ::ftruncate(m_descriptor, m_wholeSize);
}
