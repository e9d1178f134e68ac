// SPDX-License-Identifier: MIT
#include <PLog/PLogSink.h>

#include <PCore/PPrintableText.h>

#include <cstdio>

namespace {

QLatin1String levelName(PLogLevel level) {
    switch (level) {
    case PLogLevel::Debug:
        return QLatin1String("debug");
    case PLogLevel::Info:
        return QLatin1String("info");
    case PLogLevel::Warning:
        return QLatin1String("warning");
    case PLogLevel::Error:
        return QLatin1String("error");
    case PLogLevel::Off:
        break;
    }
    return QLatin1String("off");
}

QByteArray toLine(const PLogRecord& record, bool location) {
    return formatLogRecord(record, location).toUtf8() + '\n';
}

} // namespace

QString formatLogRecord(const PLogRecord& record, bool location) {
    QString line = record.time.toString(u"hh:mm:ss.zzz"_qs) + u' ' + levelName(record.level) +
                   u' ' + record.source + u": "_qs + record.text();
    if (location) {
        line += u" ["_qs + record.function + u", "_qs + record.file + u':' +
                QString::number(record.line) + u']';
    }
    return PPrintableText::toLine(line);
}

void PStderrLogSink::write(const PLogRecord& record) {
    // One call for the whole line, so that other writers cannot interleave with it.
    const QByteArray line = toLine(record, false);
    std::fwrite(line.constData(), 1, std::size_t(line.size()), stderr);
}

PFileLogSink::PFileLogSink(const QString& path)
    : m_file(path) {
    m_file.open(QIODevice::WriteOnly | QIODevice::Append);
}

void PFileLogSink::write(const PLogRecord& record) {
    if (!m_file.isOpen())
        return;
    m_file.write(toLine(record, true));
    m_file.flush();
}

PMemoryLogSink::PMemoryLogSink(qsizetype capacity)
    : m_capacity(capacity) {
}

void PMemoryLogSink::write(const PLogRecord& record) {
    const std::lock_guard lock(m_mutex);
    m_records.push_back(record);
    while (qsizetype(m_records.size()) > m_capacity)
        m_records.pop_front();
}

QList<PLogRecord> PMemoryLogSink::records() const {
    const std::lock_guard lock(m_mutex);
    return {m_records.cbegin(), m_records.cend()};
}

void PMemoryLogSink::clear() {
    const std::lock_guard lock(m_mutex);
    m_records.clear();
}
