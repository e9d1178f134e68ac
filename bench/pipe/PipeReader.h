// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QTemporaryDir>

#include <atomic>
#include <cstdint>
#include <thread>

/// A named pipe, and a reader that discards what comes: on a thread of its own, without a copy
/// (splice() to /dev/null), so that processor time is that of the writer. One thread.
class PipeReader {
public:
    PipeReader();
    /// Waits for the end of the data.
    ~PipeReader();
    PipeReader(const PipeReader&) = delete;
    PipeReader& operator=(const PipeReader&) = delete;

    const QString& path() const { return m_path; }
    /// The bytes that have come out of the pipe. Any thread.
    std::uint64_t bytes() const { return m_bytes; }

private:
    void discard(int pipe);

    QTemporaryDir m_folder;
    QString m_path;
    std::atomic<std::uint64_t> m_bytes{0};
    std::thread m_thread;
};
