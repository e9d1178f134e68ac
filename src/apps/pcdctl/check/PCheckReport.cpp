// SPDX-License-Identifier: MIT
#include <apps/pcdctl/check/PCheckReport.h>

#include <QJsonArray>
#include <QXmlStreamWriter>

namespace {

using State = PCheckResult::State;
using Entry = PCheckReport::Entry;

QJsonObject toJson(const Entry& entry) {
    QJsonArray failures;
    for (const PCheckReport::Failure& failure : entry.failures)
        failures.append(QJsonObject{{u"case"_qs, failure.where}, {u"seen"_qs, failure.seen}});
    QJsonObject object{
        {u"id"_qs, entry.rule.id},         {u"group"_qs, entry.rule.group()},
        {u"reason"_qs, entry.rule.reason}, {u"state"_qs, PCheckReport::stateName(entry.state())},
        {u"cases"_qs, entry.cases},        {u"failed"_qs, entry.failed}};
    if (entry.failed > 0) {
        object.insert(u"hint"_qs, entry.rule.hint);
        object.insert(u"failures"_qs, failures);
    }
    if (entry.state() == State::Skipped)
        object.insert(u"skipped"_qs, entry.skipped);
    if (!entry.inert.isEmpty())
        object.insert(u"inert"_qs, QJsonArray::fromStringList(entry.inert));
    return object;
}

/// Why a rule has no case, until there is another reason.
QString nothingToExamine() {
    return u"nothing of the kind to examine"_qs;
}

/// XML has no form for most control characters.
QString toXmlText(QString text) {
    for (QChar& c : text) {
        if (c < u' ' && c != u'\n' && c != u'\t')
            c = u'?';
    }
    return text;
}

QString describeFailures(const Entry& entry) {
    QString text;
    for (const PCheckReport::Failure& failure : entry.failures)
        text += u"%1: %2\n"_qs.arg(failure.where, failure.seen);
    return text + u"Rule: %1\nHint: %2"_qs.arg(entry.rule.reason, entry.rule.hint);
}

void writeCase(QXmlStreamWriter& xml, const Entry& entry) {
    xml.writeStartElement(u"testcase"_qs);
    xml.writeAttribute(u"classname"_qs, entry.rule.group());
    xml.writeAttribute(u"name"_qs, entry.rule.id);
    xml.writeAttribute(u"assertions"_qs, QString::number(entry.cases));
    if (entry.state() == State::Failed) {
        xml.writeStartElement(u"failure"_qs);
        xml.writeAttribute(u"message"_qs,
                           toXmlText(u"%1 of %2 cases: %3"_qs.arg(QString::number(entry.failed),
                                                                  QString::number(entry.cases),
                                                                  entry.failures.value(0).seen)));
        xml.writeCharacters(toXmlText(describeFailures(entry)));
        xml.writeEndElement();
    } else if (entry.state() == State::Skipped) {
        xml.writeEmptyElement(u"skipped"_qs);
        xml.writeAttribute(u"message"_qs, toXmlText(entry.skipped));
    }
    xml.writeEndElement();
}

void writeCounts(QXmlStreamWriter& xml, const QString& name, const QList<Entry>& entries) {
    const auto count = [&](State state) {
        return QString::number(
            std::count_if(entries.begin(), entries.end(),
                          [&](const Entry& entry) { return entry.state() == state; }));
    };
    xml.writeAttribute(u"name"_qs, toXmlText(name));
    xml.writeAttribute(u"tests"_qs, QString::number(entries.size()));
    xml.writeAttribute(u"failures"_qs, count(State::Failed));
    xml.writeAttribute(u"skipped"_qs, count(State::Skipped));
}

} // namespace

State Entry::state() const {
    if (failed > 0)
        return State::Failed;
    return cases > 0 ? State::Passed : State::Skipped;
}

PCheckReport::PCheckReport(const QList<PCheckRule>& rules) {
    for (const PCheckRule& rule : rules) {
        m_indexes.insert(rule.id, m_entries.size());
        m_entries.append(Entry{rule, 0, 0, {}, nothingToExamine(), {}});
    }
}

void PCheckReport::add(const PCheckRule& rule, const QString& where, const QString& property,
                       const PCheckResult& result) {
    Entry& entry = m_entries[m_indexes.value(rule.id)];
    if (result.state == State::Skipped) {
        entry.skipped = result.text;
        if (result.text == PCheckResult::inertText() && !entry.inert.contains(property))
            entry.inert.append(property);
        return;
    }
    ++entry.cases;
    if (result.state == State::Passed)
        return;
    ++entry.failed;
    if (entry.failures.size() < failuresKept)
        entry.failures.append({where, result.text});
}

void PCheckReport::endEarly(const QString& why) {
    for (Entry& entry : m_entries) {
        if (entry.skipped == nothingToExamine())
            entry.skipped = why;
    }
}

const Entry& PCheckReport::entry(const PCheckRule& rule) const {
    return m_entries[m_indexes.value(rule.id)];
}

bool PCheckReport::hasFailed(const QString& id) const {
    const auto found = m_indexes.find(id);
    return found != m_indexes.end() && m_entries[*found].failed > 0;
}

PCheckReport::Totals PCheckReport::totals() const {
    Totals totals;
    for (const Entry& entry : m_entries) {
        totals.passed += entry.state() == State::Passed ? 1 : 0;
        totals.failed += entry.state() == State::Failed ? 1 : 0;
        totals.skipped += entry.state() == State::Skipped ? 1 : 0;
        totals.cases += entry.cases;
        totals.failedCases += entry.failed;
    }
    return totals;
}

QString PCheckReport::stateName(State state) {
    switch (state) {
    case State::Passed:
        return u"passed"_qs;
    case State::Failed:
        return u"failed"_qs;
    case State::Skipped:
        return u"skipped"_qs;
    }
    return {};
}

QJsonObject PCheckReport::toJson() const {
    QJsonArray rules;
    for (const Entry& entry : m_entries)
        rules.append(::toJson(entry));
    const Totals all = totals();
    const QJsonObject numbers{
        {u"rules"_qs, m_entries.size()}, {u"passed"_qs, all.passed},
        {u"failed"_qs, all.failed},      {u"skipped"_qs, all.skipped},
        {u"cases"_qs, all.cases},        {u"failedCases"_qs, all.failedCases}};
    return {{u"totals"_qs, numbers}, {u"rules"_qs, rules}};
}

QByteArray PCheckReport::toJUnit(const QString& camera) const {
    QByteArray text;
    QXmlStreamWriter xml(&text);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(u"testsuites"_qs);
    writeCounts(xml, u"pcdctl check of %1"_qs.arg(camera), m_entries);
    for (qsizetype first = 0; first < m_entries.size();) {
        const QString group = m_entries[first].rule.group();
        qsizetype end = first;
        while (end < m_entries.size() && m_entries[end].rule.group() == group)
            ++end;
        const QList<Entry> entries = m_entries.mid(first, end - first);
        xml.writeStartElement(u"testsuite"_qs);
        writeCounts(xml, group, entries);
        for (const Entry& entry : entries)
            writeCase(xml, entry);
        xml.writeEndElement();
        first = end;
    }
    xml.writeEndDocument();
    return text;
}
