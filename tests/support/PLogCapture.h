// SPDX-License-Identifier: MIT
#pragma once

#include <PLog/PLog.h>

#include <QStringList>

/// Collects every log record from its construction to its destruction, from all threads and of all
/// levels; then restores the earlier filter. Construct and destroy on one thread, read on any.
class PLogCapture {
public:
    PLogCapture();
    ~PLogCapture();
    PLogCapture(const PLogCapture&) = delete;
    PLogCapture& operator=(const PLogCapture&) = delete;

    /// The records so far, oldest first; with a source, only its records.
    QList<PLogRecord> records(const QString& source = {}) const;
    /// The same as texts (PLogRecord::text()).
    QStringList texts(const QString& source = {}) const;
    /// True if there is a record with this text.
    bool contains(const QString& text, const QString& source = {}) const;
    void clear();

private:
    QString m_filterBefore;
    std::shared_ptr<PMemoryLogSink> m_sink;
};
