// SPDX-License-Identifier: MIT
#pragma once

#include <PLog/PLogSink.h>
#include <PLog/PMessageStream.h>

#include <PCore/PExport.h>
#include <PCore/PStatus.h>

#include <memory>

/// The host's log. All functions: any thread.
class PCD_EXPORT PLog {
public:
    /// A record from `source`; append items with operator<<, it is emitted at the end of the
    /// statement.
    static PMessageStream logStream(QString source, QString function, QString file, int line,
                                    PLogLevel level = PLogLevel::Info);

    /// Adds a sink, which receives every later record that passes the filter. Without any sink,
    /// they go to the standard error stream.
    static void addSink(std::shared_ptr<PLogSink> sink);
    /// Removes the sink; when this returns, its write() is not running on another thread.
    static void removeSink(const std::shared_ptr<PLogSink>& sink);

    /// Sets which records pass: a level for all sources, then "source=level" for single ones, with
    /// commas: "warning,PTDevice=debug". Levels: debug, info, warning, error, off. If the text is
    /// invalid, the failure names the word and the levels, and nothing changes. The default is
    /// "info".
    static PStatus setFilter(const QString& filter);
    /// The text of the current filter, as setFilter takes it.
    static QString filter();
    /// Calls setFilter() with the environment variable PCD_LOG, if it is set and not empty.
    static PStatus setFilterFromEnvironment();
    /// True if a record of this source and level passes.
    static bool passes(const QString& source, PLogLevel level);

    /// Sends Qt's own messages (qDebug and the like) to the log too, as source "qt" or, if it has
    /// a category of its own, "qt.<category>". Call once, at the start of a program.
    static void installQtMessageHandler();

    /// Passes a finished record to the sinks if it passes the filter. Called by PMessageStream.
    /// Records that a sink logs while it writes are dropped.
    static void emitRecord(const PLogRecord& record) noexcept;
};
