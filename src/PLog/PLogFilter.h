// SPDX-License-Identifier: MIT
#pragma once

#include <PLog/PLogRecord.h>

#include <PCore/PExport.h>
#include <PCore/PStatus.h>

#include <QHash>

/// Decides which records pass, as described at PLog::setFilter(). A value type; one thread at a
/// time.
class PCD_TEST_EXPORT PLogFilter {
public:
    /// Replaces the filter by the one in the text. On failure nothing changes.
    PStatus parse(const QString& text);

    /// The text it was parsed from.
    const QString& text() const { return m_text; }
    bool passes(const QString& source, PLogLevel level) const;

private:
    PStatus addWord(const QString& word, bool isFirst);

    QString m_text{u"info"_qs};
    PLogLevel m_level = PLogLevel::Info;
    QHash<QString, PLogLevel> m_sources;
};
