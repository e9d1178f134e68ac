// SPDX-License-Identifier: MIT
#pragma once

#include <PLog/PLogRecord.h>

#include <PCore/PExport.h>

#include <QFile>

#include <deque>
#include <mutex>

/// Receives log records. write() is called on the thread that logs, one call at a time for each
/// sink; it must not log, and its exceptions are ignored.
class PCD_EXPORT PLogSink {
public:
    virtual ~PLogSink() = default;
    /// Takes one record, which is valid during the call.
    virtual void write(const PLogRecord& record) = 0;
};

/// One record as one line of text: "hh:mm:ss.zzz level source: text", the time in UTC, line breaks
/// and other control characters made visible (PPrintableText); with `location` also
/// " [function, file:line]".
PCD_EXPORT QString formatLogRecord(const PLogRecord& record, bool location = false);

/// Writes lines to the standard error stream.
class PCD_EXPORT PStderrLogSink : public PLogSink {
public:
    void write(const PLogRecord& record) override;
};

/// Appends lines, with their location, to a file; every line is flushed.
class PCD_EXPORT PFileLogSink : public PLogSink {
public:
    explicit PFileLogSink(const QString& path);
    /// False if the file could not be opened; errorString() says why.
    bool isOpen() const { return m_file.isOpen(); }
    QString errorString() const { return m_file.errorString(); }
    void write(const PLogRecord& record) override;

private:
    QFile m_file;
};

/// Keeps the newest records, for tests and for a log page.
class PCD_EXPORT PMemoryLogSink : public PLogSink {
public:
    explicit PMemoryLogSink(qsizetype capacity = 10000);
    void write(const PLogRecord& record) override;
    /// A copy of the kept records, oldest first. Any thread.
    QList<PLogRecord> records() const;
    void clear();

private:
    mutable std::mutex m_mutex; // written by any thread, read by the log page or a test
    qsizetype m_capacity;
    // Not a QList: a copy would share its memory, and be read while records are still being added.
    std::deque<PLogRecord> m_records;
};
