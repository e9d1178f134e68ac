// SPDX-License-Identifier: MIT
#pragma once

#include <PLog/PLog.h>
#include <PLog/PLogSink.h>

#include <memory>

/// While one exists, the log is written but not shown, unless PCD_LOG is set: thousands of sessions
/// log more than anyone reads. One thread.
class QuietLog {
public:
    QuietLog() {
        if (qEnvironmentVariableIsEmpty("PCD_LOG"))
            PLog::addSink(m_sink);
    }
    ~QuietLog() { PLog::removeSink(m_sink); }
    QuietLog(const QuietLog&) = delete;
    QuietLog& operator=(const QuietLog&) = delete;

private:
    class NoLog : public PLogSink {
    public:
        void write(const PLogRecord& /*record*/) override {}
    };

    std::shared_ptr<PLogSink> m_sink = std::make_shared<NoLog>();
};
