// SPDX-License-Identifier: MIT
#include <toupcam/trace/record/PTraceFile.h>

#include <QJsonDocument>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace {

QString toReason(int error) {
    return qt_error_string(error);
}

/// A new file, or -1 with the reason in errno.
int createNew(const QByteArray& path) {
    return ::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
}

/// Writes all bytes, at this place. Returns 0 or the errno of the failure.
int writeAt(int file, const void* data, std::size_t bytes, qint64 place) {
    const auto* next = static_cast<const char*>(data);
    while (bytes > 0) {
        const ssize_t written = ::pwrite(file, next, bytes, place);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return written < 0 ? errno : EIO;
        next += written;
        place += written;
        bytes -= std::size_t(written);
    }
    return 0;
}

int appendAll(int file, const QByteArray& bytes) {
    return writeAt(file, bytes.constData(), std::size_t(bytes.size()), ::lseek(file, 0, SEEK_END));
}

QByteArray toLine(const QJsonObject& object) {
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

} // namespace

PTraceFile::~PTraceFile() {
    for (const int file : {m_lines, m_frames}) {
        if (file >= 0)
            ::close(file);
    }
}

QString PTraceFile::create(const QByteArray& path, const QJsonObject& header, bool withFrames) {
    m_lines = createNew(path);
    if (m_lines < 0)
        return toReason(errno);
    const QByteArray frames = toFramesName(path);
    m_frames = withFrames ? createNew(frames) : -1;
    if (withFrames && m_frames < 0) {
        const QString reason = toReason(errno);
        ::unlink(path.constData());
        return QString::fromLocal8Bit(frames) + u": "_qs + reason;
    }
    const int error = appendAll(m_lines, toLine(header));
    if (error == 0)
        return {};
    ::unlink(path.constData());
    if (withFrames)
        ::unlink(frames.constData());
    return toReason(error);
}

void PTraceFile::append(const QJsonObject& line) {
    const QByteArray bytes = toLine(line);
    const std::lock_guard lock(m_mutex);
    // Nothing after a line that was cut: it would be read as part of it.
    if (!m_failure.isEmpty())
        return;
    if (const int error = appendAll(m_lines, bytes))
        m_failure = toReason(error);
}

qint64 PTraceFile::appendFrame(const void* data, std::size_t bytes) {
    // Without the lock: two cameras write at the same time, each at its own place.
    const qint64 place = m_frameBytes.fetch_add(qint64(bytes));
    const int error = writeAt(m_frames, data, bytes, place);
    if (error != 0)
        fail(error);
    return error == 0 ? place : -1;
}

void PTraceFile::fail(int error) {
    const std::lock_guard lock(m_mutex);
    if (m_failure.isEmpty())
        m_failure = toReason(error);
}

QString PTraceFile::failure() const {
    const std::lock_guard lock(m_mutex);
    return m_failure;
}
