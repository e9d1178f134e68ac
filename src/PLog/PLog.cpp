// SPDX-License-Identifier: MIT
#include <PLog/PLog.h>

#include <PLog/PLogFilter.h>

#include <QLoggingCategory>

#include <algorithm>
#include <mutex>
#include <shared_mutex>
#include <vector>

namespace {

/// A sink in use. Its mutex serialises writes and lets removeSink() wait for one in progress;
/// recursive, so that a sink may remove itself while it writes.
struct Outlet {
    explicit Outlet(std::shared_ptr<PLogSink> target)
        : sink(std::move(target)) {}
    void write(const PLogRecord& record) {
        const std::lock_guard lock(mutex);
        if (isRemoved)
            return;
        try {
            sink->write(record);
        } catch (...) {
            // A statement must not fail because logging failed.
        }
    }

    std::recursive_mutex mutex; // see above
    const std::shared_ptr<PLogSink> sink;
    bool isRemoved = false;
};

using Outlets = std::vector<std::shared_ptr<Outlet>>;

struct State {
    std::shared_mutex mutex; // guards the two below; never held while a sink writes
    PLogFilter filter;
    std::shared_ptr<const Outlets> outlets = std::make_shared<const Outlets>();

    const std::shared_ptr<Outlet> standard =
        std::make_shared<Outlet>(std::make_shared<PStderrLogSink>());
};

/// Never destroyed: static objects of other libraries may log while the program ends.
State& state() {
    static State* const instance = new State;
    return *instance;
}

auto findSink(const Outlets& outlets, const std::shared_ptr<PLogSink>& sink) {
    return std::find_if(outlets.begin(), outlets.end(),
                        [&](const auto& outlet) { return outlet->sink == sink; });
}

std::shared_ptr<const Outlets> currentOutlets() {
    const std::shared_lock lock(state().mutex);
    return state().outlets;
}

void writeToSinks(const PLogRecord& record) {
    const auto outlets = currentOutlets();
    for (const auto& outlet : *outlets)
        outlet->write(record);
    if (outlets->empty())
        state().standard->write(record);
}

PLogLevel toLevel(QtMsgType type) {
    switch (type) {
    case QtDebugMsg:
        return PLogLevel::Debug;
    case QtInfoMsg:
        return PLogLevel::Info;
    case QtWarningMsg:
        return PLogLevel::Warning;
    case QtCriticalMsg:
    case QtFatalMsg:
        break;
    }
    return PLogLevel::Error;
}

QString toSource(const QMessageLogContext& context) {
    const QString category = QString::fromUtf8(context.category);
    return category.isEmpty() || category == u"default" ? u"qt"_qs : u"qt."_qs + category;
}

void takeQtMessage(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    const QString source = toSource(context);
    if (!PLog::passes(source, toLevel(type)))
        return;
    PLog::logStream(source, QString::fromUtf8(context.function), QString::fromUtf8(context.file),
                    context.line, toLevel(type))
        << message;
}

} // namespace

PMessageStream PLog::logStream(QString source, QString function, QString file, int line,
                               PLogLevel level) {
    PLogRecord record;
    record.time = QDateTime::currentDateTimeUtc();
    record.level = level;
    record.source = std::move(source);
    record.function = std::move(function);
    record.file = std::move(file);
    record.line = line;
    return PMessageStream(std::move(record));
}

void PLog::addSink(std::shared_ptr<PLogSink> sink) {
    const std::lock_guard lock(state().mutex);
    const Outlets& before = *state().outlets;
    if (!sink || findSink(before, sink) != before.end())
        return;
    auto after = std::make_shared<Outlets>(before);
    after->push_back(std::make_shared<Outlet>(std::move(sink)));
    state().outlets = std::move(after);
}

void PLog::removeSink(const std::shared_ptr<PLogSink>& sink) {
    std::shared_ptr<Outlet> removed;
    {
        const std::lock_guard lock(state().mutex);
        auto after = std::make_shared<Outlets>(*state().outlets);
        const auto found = findSink(*after, sink);
        if (found == after->end())
            return;
        removed = *found;
        after->erase(found);
        state().outlets = std::move(after);
    }
    // A record being emitted may still use the old list: it either sees the mark, or is waited for.
    const std::lock_guard lock(removed->mutex);
    removed->isRemoved = true;
}

PStatus PLog::setFilter(const QString& filter) {
    const std::lock_guard lock(state().mutex);
    return state().filter.parse(filter);
}

QString PLog::filter() {
    const std::shared_lock lock(state().mutex);
    return state().filter.text();
}

PStatus PLog::setFilterFromEnvironment() {
    const QString filter = qEnvironmentVariable("PCD_LOG");
    return filter.isEmpty() ? PStatus() : setFilter(filter);
}

bool PLog::passes(const QString& source, PLogLevel level) {
    const std::shared_lock lock(state().mutex);
    return state().filter.passes(source, level);
}

void PLog::installQtMessageHandler() {
    qInstallMessageHandler(takeQtMessage);
}

void PLog::emitRecord(const PLogRecord& record) noexcept {
    // Otherwise a sink that logs, or causes a warning of Qt, would recurse without end.
    thread_local bool isWriting = false;
    if (isWriting || !passes(record.source, record.level))
        return;
    isWriting = true;
    writeToSinks(record);
    isWriting = false;
}
