// SPDX-License-Identifier: MIT
#include <support/PLogCapture.h>

PLogCapture::PLogCapture()
    : m_filterBefore(PLog::filter())
    , m_sink(std::make_shared<PMemoryLogSink>()) {
    PLog::setFilter(u"debug"_qs);
    PLog::addSink(m_sink);
}

PLogCapture::~PLogCapture() {
    PLog::removeSink(m_sink);
    PLog::setFilter(m_filterBefore);
}

QList<PLogRecord> PLogCapture::records(const QString& source) const {
    QList<PLogRecord> records = m_sink->records();
    if (!source.isEmpty())
        records.removeIf([&](const PLogRecord& record) { return record.source != source; });
    return records;
}

QStringList PLogCapture::texts(const QString& source) const {
    QStringList texts;
    for (const PLogRecord& record : records(source))
        texts.append(record.text());
    return texts;
}

bool PLogCapture::contains(const QString& text, const QString& source) const {
    return texts(source).contains(text);
}

void PLogCapture::clear() {
    m_sink->clear();
}
