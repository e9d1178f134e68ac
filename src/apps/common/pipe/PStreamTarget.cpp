// SPDX-License-Identifier: MIT
#include <apps/common/pipe/PStreamTarget.h>

#include <apps/common/program/PStandardStreams.h>

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <limits>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds lookInterval(50); // for a new deadline, while a reader pauses
constexpr int pipeBytes = 1 << 20;                    // what the system allows every user
constexpr std::size_t mostAtOnce = std::size_t(16) << 20;

PStatus refuse(const QString& path, const QString& reason) {
    return PStatus::failure(u"cannot write to \"%1\": %2"_qs.arg(path, reason));
}

/// A description of its own for the same pipe: not to block is a property of the description, which
/// other processes may share. Negative if there cannot be one.
int reopen(int file) {
    const QByteArray path = "/proc/self/fd/" + QByteArray::number(file);
    return ::open(path.constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
}

/// Frames would take the place of the files on it.
bool isDisk(const QString& path) {
    struct stat found {};
    return ::stat(QFile::encodeName(path).constData(), &found) == 0 && S_ISBLK(found.st_mode);
}

} // namespace

PStreamTarget::PStreamTarget(QString path)
    : m_path(std::move(path))
    , m_deadline(std::numeric_limits<Clock::rep>::max()) {
}

PStreamTarget::~PStreamTarget() {
    close();
}

QString PStreamTarget::name() const {
    return m_path == standardOutput() ? u"standard output"_qs : u'"' + m_path + u'"';
}

std::optional<PStatus> PStreamTarget::tryOpen() {
    // A reader that ends is an ordinary end: writing then fails, and the program goes on.
    std::signal(SIGPIPE, SIG_IGN);
    if (isDisk(m_path))
        return refuse(m_path, u"it is a disk, whose files would be lost: expected a new file, a "
                              "named pipe or another device"_qs);
    m_file = openPath();
    if (m_file < 0) {
        struct stat found {};
        const int error = errno;
        const bool isPipe =
            ::stat(QFile::encodeName(m_path).constData(), &found) == 0 && S_ISFIFO(found.st_mode);
        if (error == ENXIO && isPipe)
            return std::nullopt;
        return refuse(m_path, qt_error_string(error));
    }
    if (isatty(m_file) == 1) {
        ::close(std::exchange(m_file, -1));
        return PStatus::failure(
            u"%1 is a terminal, which cannot show frames: expected a pipe or a file"_qs.arg(
                name()));
    }
    examine();
    return PStatus(PStatus::Ok);
}

/// Opens the file, pipe or device, or makes the file; returns a descriptor, or -1 with errno.
int PStreamTarget::openPath() {
    if (m_path == standardOutput())
        return ::fcntl(PStandardStreams::dataOutput(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    const QByteArray path = QFile::encodeName(m_path);
    // Only pipes and devices are written to; a file, or what a link leads to, is never replaced.
    struct stat found {};
    if (::stat(path.constData(), &found) == 0 && !S_ISREG(found.st_mode))
        return ::open(path.constData(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    const int file = ::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    m_isNew = file >= 0;
    return file;
}

/// Finds out what was opened, and prepares it.
void PStreamTarget::examine() {
    struct stat found {};
    if (::fstat(m_file, &found) != 0)
        return;
    if (S_ISFIFO(found.st_mode))
        makePipeReady();
    else if (S_ISSOCK(found.st_mode))
        m_kind = Kind::Socket;
    else if (S_ISCHR(found.st_mode))
        m_kind = Kind::Device;
}

/// Writing to the pipe blocks for no longer than a look at it (see waitForReader()).
void PStreamTarget::makePipeReady() {
    // Fewer changes between this process and the reader; a refusal does not matter.
    ::fcntl(m_file, F_SETPIPE_SZ, pipeBytes);
    m_kind = Kind::Pipe;
    if (m_path != standardOutput())
        return;
    // Not possible without a reader, without /proc, or for a pipe of another user.
    const int own = reopen(m_file);
    if (own < 0)
        m_kind = Kind::SharedPipe;
    else
        ::close(std::exchange(m_file, own));
}

PStatus PStreamTarget::write(const unsigned char* data, std::size_t size) {
    while (size > 0) {
        if (!waitForReader())
            return giveUp();
        const long written = writeSome(data, size);
        if (written < 0 && (errno == EINTR || errno == EAGAIN))
            continue;
        if (written <= 0)
            return fail(written < 0 ? errno : EIO);
        m_bytes += std::uint64_t(written);
        data += written;
        size -= std::size_t(written);
    }
    return PStatus::Ok;
}

/// Waits until the pipe or device has room, or no reader. False if the time for that is over.
bool PStreamTarget::waitForReader() const {
    if (m_kind == Kind::File)
        return true; // a disk takes what it is given
    while (Clock::now().time_since_epoch().count() < m_deadline) {
        pollfd one{m_file, POLLOUT, 0};
        if (::poll(&one, 1, int(lookInterval.count())) > 0)
            return true;
    }
    return false;
}

long PStreamTarget::writeSome(const unsigned char* data, std::size_t size) const {
    switch (m_kind) {
    case Kind::Socket:
        return ::send(m_file, data, size, MSG_DONTWAIT | MSG_NOSIGNAL);
    case Kind::SharedPipe:
        // What fits into the room of one page that poll() has found.
        return ::write(m_file, data, std::min<std::size_t>(size, PIPE_BUF));
    case Kind::File:
    case Kind::Device:
    case Kind::Pipe:
        break;
    }
    return ::write(m_file, data, std::min(size, mostAtOnce));
}

PStatus PStreamTarget::fail(int error) {
    const bool isClosed = error == EPIPE || (m_kind == Kind::Socket && error == ECONNRESET);
    m_end = isClosed ? End::ReaderClosed : End::Failed;
    return PStatus::failure(isClosed ? u"the reader has closed the pipe"_qs
                                     : qt_error_string(error));
}

PStatus PStreamTarget::giveUp() {
    m_end = End::GivenUp;
    return PStatus::failure(u"the reader did not take the rest in time"_qs);
}

void PStreamTarget::giveUpAfter(std::chrono::milliseconds time) {
    m_deadline = (Clock::now() + time).time_since_epoch().count();
}

bool PStreamTarget::isReaderGone() const {
    if (m_kind == Kind::File || m_kind == Kind::Device)
        return false;
    pollfd one{m_file, 0, 0};
    return ::poll(&one, 1, 0) > 0 && (one.revents & (POLLERR | POLLHUP)) != 0;
}

PStatus PStreamTarget::close() {
    if (m_file < 0)
        return PStatus::Ok;
    const bool isCut =
        m_isNew && m_wholeBytes < m_bytes && ::ftruncate(m_file, off_t(m_wholeBytes)) == 0;
    const int error = ::close(std::exchange(m_file, -1)) == 0 ? 0 : errno;
    if (m_isNew && (isCut ? m_wholeBytes : m_bytes.load()) == 0)
        QFile::remove(m_path);
    return error == 0 ? PStatus(PStatus::Ok) : PStatus::failure(qt_error_string(error));
}
