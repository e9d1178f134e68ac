// SPDX-License-Identifier: MIT
#pragma once

#include <PLog/PLogSink.h>
#include <PLog/PMessageStream.h>

#include <PCore/PStatus.h>

#include <memory>

/// The host's log. All functions: any thread.
class PLog {
public:
    /// A record from `source`, to be filled with operator<< and emitted at the end of the
    /// statement.
    static PMessageStream logStream(QString source, QString function, QString file, int line,
                                    PLogLevel level = PLogLevel::Info);

    /// Adds a sink; it gets every record that passes the filter from now on. With no sink at all,
    /// records that pass go to the standard error stream.
    static void addSink(std::shared_ptr<PLogSink> sink);
    /// Takes the sink away; when this returns no write() of it is running on another thread.
    static void removeSink(const std::shared_ptr<PLogSink>& sink);

    /// Sets which records pass: a level for all sources, then "source=level" for single ones, with
    /// commas: "warning,PTDevice=debug". Levels: debug, info, warning, error, off. On a bad text
    /// the failure names the word and the levels, and nothing is changed. The start value is
    /// "info".
    static PStatus setFilter(const QString& filter);
    /// The text of the current filter, as setFilter takes it.
    static QString filter();
    /// Does what setFilter does with the environment variable PCD_LOG, if it is set and not empty.
    static PStatus setFilterFromEnvironment();
    /// True if a record of this source and level passes.
    static bool passes(const QString& source, PLogLevel level);

    /// Sends Qt's own messages (qDebug and the rest) into the log too, as source "qt" or, if it has
    /// a category of its own, "qt.<category>". Call once, at the start of a program.
    static void installQtMessageHandler();

    /// Emits a finished record to the sinks if it passes the filter. PMessageStream calls this.
    /// What a sink logs while it writes is dropped.
    static void emitRecord(const PLogRecord& record) noexcept;
};
