// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PStatus.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <optional>

/// Where the bytes of a stream go: standard output, a named pipe, or a new file. One thread opens
/// and closes it and one other writes, unless a function says otherwise.
class PStreamTarget {
public:
    /// The path that is standard output, as PStandardStreams::dataOutput() has it. Any thread.
    static QString standardOutput() { return u"-"_qs; }

    explicit PStreamTarget(QString path);
    ~PStreamTarget();
    PStreamTarget(const PStreamTarget&) = delete;
    PStreamTarget& operator=(const PStreamTarget&) = delete;

    /// Opens it, without waiting. Fails with the reason: a terminal, a folder, a disk, a file that
    /// exists.
    /// Nothing while a named pipe has no reader: call it again later.
    std::optional<PStatus> tryOpen();
    /// Writes all bytes, waiting while the reader takes none. Fails with the system's reason, or as
    /// end() says.
    PStatus write(const unsigned char* data, std::size_t size);
    /// A frame is complete: if a later one fails, a new file ends here.
    void endFrame() { m_wholeBytes = m_bytes; }
    /// Closes it; a new file without any bytes is removed, and one that ends within a frame is cut.
    /// Fails with the system's reason.
    PStatus close();

    /// From this time on, writing to a pipe or device fails where a reader would have to be waited
    /// for, or has taken its time. Any thread.
    void giveUpAfter(std::chrono::milliseconds time);

    /// Why nothing more can be written.
    enum class End {
        None,         ///< more can
        ReaderClosed, ///< the reader has closed the pipe
        GivenUp,      ///< giveUpAfter() this time
        Failed        ///< for another reason
    };
    /// Any thread.
    End end() const { return m_end; }
    /// True if the pipe has lost its reader, also while nothing is written. Any thread, between
    /// tryOpen() and close().
    bool isReaderGone() const;

    /// The bytes written so far. Any thread.
    std::uint64_t bytes() const { return m_bytes; }
    /// "standard output", or the path in quotes. Any thread.
    QString name() const;

private:
    enum class Kind { File, Device, Pipe, SharedPipe, Socket };

    int openPath();
    void examine();
    void makePipeReady();
    bool waitForReader() const;
    long writeSome(const unsigned char* data, std::size_t size) const;
    PStatus fail(int error);
    PStatus giveUp();

    const QString m_path;
    int m_file = -1;
    Kind m_kind = Kind::File;
    bool m_isNew = false;           ///< a file that this has made
    std::uint64_t m_wholeBytes = 0; ///< up to the end of the last complete frame
    std::atomic<std::uint64_t> m_bytes{0};
    std::atomic<End> m_end{End::None};
    std::atomic<std::chrono::steady_clock::rep> m_deadline;
};
