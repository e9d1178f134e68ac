// SPDX-License-Identifier: MIT
#include <apps/common/tiff/PTransactionalFile.h>

#include <QFile>

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <utility>

namespace {

constexpr mode_t everybody = 0666; // minus the permissions in the user's mask

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
    m_descriptor = ::open(QFile::encodeName(path).constData(),
                          O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, everybody);
    return isOpen() ? PStatus() : PStatus::failure(qt_error_string(errno));
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
    if (now.st_nlink == 0)
        return tr("the file was removed while it was being written");
    return now.st_size < m_wholeSize ? tr("the file was truncated while it was being written")
                                     : QString();
}

void PTransactionalFile::reserve(qint64 count) {
    struct statfs system {};
    // Reserving memory is as much work as writing to it.
    if (fstatfs(m_descriptor, &system) != 0 || system.f_type == TMPFS_MAGIC)
        return;
    // Without a change of the size: the file stays valid if the program is killed now.
    [[maybe_unused]] const int reserved =
        ::fallocate(m_descriptor, FALLOC_FL_KEEP_SIZE, m_size, count);
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
        return fail(ENOMEM);
    }
}

bool PTransactionalFile::writeNow(qint64 offset, const char* bytes, qint64 count) {
    while (count > 0) {
        const ssize_t written = ::pwrite(m_descriptor, bytes, std::size_t(count), offset);
        if (written < 0 && errno == EINTR)
            continue;
        // A disk that fills up first writes a part, and gives the reason only at the next attempt.
        if (written <= 0)
            return fail(written < 0 ? errno : EIO);
        bytes += written;
        offset += written;
        count -= written;
    }
    return true;
}

bool PTransactionalFile::fail(int error) {
    m_failed = true;
    m_error = qt_error_string(error);
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
    m_size = m_wholeSize;
    // If the rest of a failed step cannot be cut off, it does no harm, as it is beyond the end.
    [[maybe_unused]] const int cut = ::ftruncate(m_descriptor, m_wholeSize);
}
