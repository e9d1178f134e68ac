// SPDX-License-Identifier: MIT
#include <apps/pcdctl/check/PCheckPrinter.h>

#include <apps/pcdctl/cli/PCtlOutput.h>

namespace {

constexpr int stateWidth = 9; // of "skipped" and two spaces

QString toCases(qint64 count) {
    return (count == 1 ? u"%1 case"_qs : u"%1 cases"_qs).arg(count);
}

QString toRules(qint64 count) {
    return (count == 1 ? u"%1 rule"_qs : u"%1 rules"_qs).arg(count);
}

QString describeCases(const PCheckReport::Entry& entry) {
    switch (entry.state()) {
    case PCheckResult::State::Passed:
        return toCases(entry.cases);
    case PCheckResult::State::Failed:
        return u"%1 of %2"_qs.arg(QString::number(entry.failed), toCases(entry.cases));
    case PCheckResult::State::Skipped:
        return entry.skipped;
    }
    return {};
}

} // namespace

void PCheckPrinter::showCase(const QString& rule, const QString& where) {
    if (m_status.isDue())
        m_status.show(u"%1: %2"_qs.arg(rule, where));
}

void PCheckPrinter::printFailure(const PCheckReport::Entry& entry, const QString& where,
                                 const QString& seen) {
    if (entry.failed > PCheckReport::failuresKept)
        return;
    const QString indent(stateWidth, u' ');
    m_status.clear();
    PCtlOutput::printLine(u"%1: %2"_qs.arg(entry.rule.id, where));
    PCtlOutput::printLine(u"%1Seen: %2"_qs.arg(indent, seen));
    if (entry.failed == 1) {
        PCtlOutput::printLine(u"%1Rule: %2"_qs.arg(indent, entry.rule.reason));
        PCtlOutput::printLine(u"%1Hint: %2"_qs.arg(indent, entry.rule.hint));
    }
    PCtlOutput::flush();
}

void PCheckPrinter::printRule(const PCheckReport::Entry& entry) {
    m_status.clear();
    PCtlOutput::printLine(
        u"%1%2: %3"_qs.arg(PCheckReport::stateName(entry.state()).leftJustified(stateWidth),
                           entry.rule.id, describeCases(entry)));
    if (!entry.inert.isEmpty()) {
        PCtlOutput::printLine(
            u"%1Left out, as nothing changes them: %2. The camera lacks them, or the driver does "
            "not send them."_qs.arg(QString(stateWidth, u' '), entry.inert.join(u", "_qs)));
    }
    PCtlOutput::flush();
}

QString PCheckPrinter::describeTotals(const PCheckReport& report) {
    const PCheckReport::Totals totals = report.totals();
    return u"%1: %2 passed, %3 failed, %4 skipped; %5: %6 failed"_qs.arg(
        toRules(report.entries().size()), QString::number(totals.passed),
        QString::number(totals.failed), QString::number(totals.skipped), toCases(totals.cases),
        QString::number(totals.failedCases));
}
