// SPDX-License-Identifier: MIT
#include <pipe/PipeReader.h>

#include <QFile>

#include <stdexcept>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

PipeReader::PipeReader()
    : m_path(m_folder.filePath(u"pipe"_qs)) {
    const QByteArray name = QFile::encodeName(m_path);
    const int pipe = ::mkfifo(name.constData(), 0600) == 0
                         ? ::open(name.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)
                         : -1;
    if (pipe < 0)
        throw std::runtime_error("no pipe could be made");
    m_thread = std::thread([this, pipe] { discard(pipe); });
}

PipeReader::~PipeReader() {
    m_thread.join();
}

void PipeReader::discard(int pipe) {
    constexpr std::size_t most = std::size_t(1) << 20;
    const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    for (;;) {
        pollfd one{pipe, POLLIN, 0};
        ::poll(&one, 1, -1);
        const ssize_t size = ::splice(pipe, nullptr, nowhere, nullptr, most, SPLICE_F_MOVE);
        if (size > 0)
            m_bytes += std::uint64_t(size);
        else if (size == 0 && (one.revents & POLLHUP) != 0)
            break;
    }
    ::close(nowhere);
    ::close(pipe);
}
