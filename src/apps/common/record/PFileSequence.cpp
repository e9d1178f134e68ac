// SPDX-License-Identifier: MIT
#include <apps/common/record/PFileSequence.h>

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

PStatus PFileSequence::setPattern(const QString& pattern) {
    // A # in the folder's name is not replaced.
    static const QRegularExpression oneRun(u"^((?:.*/)?[^#/]*)(#+)([^#/]*)$"_qs,
                                           QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = oneRun.match(pattern);
    if (!match.hasMatch()) {
        return PStatus::failure(
            u"\"%1\" is not a pattern for file names: expected one run of # in the "
            "name for the number, as in \"frame-####.png\""_qs.arg(pattern));
    }
    m_before = match.captured(1);
    m_digits = int(match.capturedLength(2));
    m_after = match.captured(3);
    return PStatus::Ok;
}

QString PFileSequence::path(quint64 number) const {
    return m_before + QString::number(number).rightJustified(m_digits, u'0') + m_after;
}

QString PFileSequence::firstExisting(quint64 last) const {
    const QFileInfo example(path(1));
    const QString folder = m_before.left(m_before.lastIndexOf(u'/') + 1);
    quint64 first = 0;
    for (const QString& name : example.dir().entryList(QDir::AllEntries | QDir::Hidden)) {
        const quint64 number = toNumber(folder + name);
        if (number >= 1 && number <= last && (first == 0 || number < first))
            first = number;
    }
    return first == 0 ? QString() : path(first);
}

/// The number of a file of the series, or 0.
quint64 PFileSequence::toNumber(const QString& path) const {
    const qsizetype digits = path.size() - m_before.size() - m_after.size();
    if (digits < m_digits || !path.startsWith(m_before) || !path.endsWith(m_after))
        return 0;
    const quint64 number = path.mid(m_before.size(), digits).toULongLong();
    return this->path(number) == path ? number : 0;
}
