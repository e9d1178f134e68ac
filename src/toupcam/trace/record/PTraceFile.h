// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <atomic>
#include <mutex>

/// The file of a trace, written line by line, and the file of its frames. A line is in the hands of
/// the system when append() returns, so that a crash of the program loses none. Any thread, but for
/// create().
class PTraceFile {
public:
    PTraceFile() = default;
    /// Closes the files.
    ~PTraceFile();
    PTraceFile(const PTraceFile&) = delete;
    PTraceFile& operator=(const PTraceFile&) = delete;

    /// The name of the file with the pixels.
    static QByteArray toFramesName(const QByteArray& path) { return path + ".frames"; }

    /// Creates the file with its first line, and one for frames if requested. Returns the reason if
    /// that fails: nothing is replaced, and nothing remains.
    QString create(const QByteArray& path, const QJsonObject& header, bool withFrames);

    /// Appends a line. After a failure the trace ends: later lines are left out.
    void append(const QJsonObject& line);
    bool hasFrames() const { return m_frames >= 0; }
    /// Appends pixels to the file of frames and returns where they begin; -1 if that fails.
    qint64 appendFrame(const void* data, std::size_t bytes);

    /// Why the trace is not complete; empty if it is.
    QString failure() const;

private:
    void fail(int error);

    int m_lines = -1;
    int m_frames = -1;
    std::atomic<qint64> m_frameBytes{0};
    mutable std::mutex m_mutex; // guards the one below and the order of lines: every SDK thread
    QString m_failure;
};
