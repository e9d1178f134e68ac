// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/CtlProcess.h>

#include <algorithm>
#include <limits>
#include <utility>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

/// A pcdctl whose standard output is a pipe, from which the test reads when it wants to, or another
/// program. One thread.
class PipeProcess {
public:
    explicit PipeProcess(const QStringList& arguments)
        : process(arguments) {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0)
            return;
        m_reader = ends[0];
        m_writer = ends[1];
        process.with([writer = m_writer] { dup2(writer, STDOUT_FILENO); });
    }
    ~PipeProcess() {
        reader.kill();
        reader.waitForFinished();
        closeReader();
        closeWriter();
    }
    PipeProcess(const PipeProcess&) = delete;
    PipeProcess& operator=(const PipeProcess&) = delete;

    void start() {
        process.start();
        closeWriter(); // else there would be no end of the data
    }
    /// This number of bytes, or fewer at the end of the data.
    QByteArray read(qsizetype size) {
        QByteArray bytes;
        char part[1 << 16];
        while (bytes.size() < size) {
            const auto wanted =
                std::min<std::size_t>(sizeof part, std::size_t(size - bytes.size()));
            const ssize_t got = ::read(m_reader, part, wanted);
            if (got <= 0)
                break;
            bytes.append(part, got);
        }
        return bytes;
    }
    QByteArray readAll() { return read(std::numeric_limits<int>::max()); }
    void closeReader() { closeEnd(m_reader); }
    /// Starts a script of sh that reads in place of the test, which keeps the pipe open too.
    void startReader(const QString& script) {
        reader.setChildProcessModifier([end = m_reader] { dup2(end, STDIN_FILENO); });
        reader.start(u"sh"_qs, {u"-c"_qs, script});
    }
    /// True if the pipe has no page left: who writes more has to wait.
    bool isFull() const {
        int held = 0;
        ioctl(m_reader, FIONREAD, &held);
        // Of the first and the last page a part may be unused.
        return held > fcntl(m_reader, F_GETPIPE_SZ) - 3 * int(sysconf(_SC_PAGESIZE));
    }

    CtlProcess process;
    QProcess reader;

private:
    static void closeEnd(int& end) {
        if (end >= 0)
            ::close(std::exchange(end, -1));
    }
    void closeWriter() { closeEnd(m_writer); }

    int m_reader = -1;
    int m_writer = -1;
};
