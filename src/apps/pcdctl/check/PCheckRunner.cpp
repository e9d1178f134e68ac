// SPDX-License-Identifier: MIT
#include <apps/pcdctl/check/PCheckRunner.h>

#include <PCd/property/PDeviceProperty.h>

#include <PCore/PPrintableText.h>

#include <exception>

namespace {

using Where = PCheckRule::Where;

/// The states in which any rule is examined, in the order that changes the least.
QList<PCheckState> makeStates(const QList<PDeviceMode>& modes) {
    QList<PCheckState> states{PCheckState{}};
    for (const PDeviceMode& mode : modes) {
        states.append({mode, false});
        states.append({mode, true});
    }
    if (modes.isEmpty())
        states.append({std::nullopt, true});
    return states;
}

bool isExaminedIn(Where where, const PCheckState& state, bool hasModes) {
    const bool isOnce = !state.mode && !state.isStreaming;
    switch (where) {
    case Where::Once:
        return isOnce;
    case Where::Modes:
        return !state.isStreaming && isOnce != hasModes;
    case Where::Streaming:
        return state.isStreaming;
    case Where::States:
        return state.isStreaming || isOnce != hasModes;
    }
    return false;
}

} // namespace

PCheckRunner::PCheckRunner(PCheckBench& bench, const QList<PCheckRule>& rules,
                           const PCheckOptions& options)
    : m_bench(bench)
    , m_rules(rules)
    , m_options(options)
    , m_report(rules) {
    addNeeds();
}

bool PCheckRunner::run() {
    for (int i = 0; i < m_options.iterations && !m_bench.isInterrupted(); ++i)
        runOnce();
    m_bench.putBack();
    return !m_bench.isInterrupted();
}

void PCheckRunner::runOnce() {
    for (qsizetype first = 0; first < m_rules.size() && !m_bench.isInterrupted();) {
        const QString group = m_rules[first].group();
        QList<PCheckRule> rules;
        for (; first < m_rules.size() && m_rules[first].group() == group; ++first)
            rules.append(m_rules[first]);
        runGroup(rules);
    }
}

void PCheckRunner::runGroup(const QList<PCheckRule>& rules) {
    for (const PCheckState& state : makeStates(m_bench.modes())) {
        if (m_bench.isInterrupted())
            return;
        QList<PCheckRule> examined;
        for (const PCheckRule& rule : rules) {
            if (isExaminedIn(rule.where, state, !m_bench.modes().isEmpty()))
                examined.append(rule);
        }
        if (!examined.isEmpty())
            runState(examined, state);
    }
    if (m_bench.isInterrupted())
        return;
    for (const PCheckRule& rule : rules)
        emit ruleEnded(rule);
}

void PCheckRunner::runState(const QList<PCheckRule>& rules, const PCheckState& state) {
    for (const PCheckRule& rule : rules)
        runRule(rule, state);
    m_bench.putBack();
}

void PCheckRunner::runRule(const PCheckRule& rule, const PCheckState& state) {
    const QString reason = reasonToSkip(rule);
    if (!reason.isEmpty()) {
        m_report.add(rule, {}, {}, PCheckResult::skipped(reason));
        return;
    }
    if (m_bench.isInterrupted())
        return;
    const PStatus entered = enter(state);
    if (!entered.isOk()) {
        m_report.add(rule, {}, {}, PCheckResult::skipped(entered.reason()));
        return;
    }
    if (rule.subject == PCheckRule::For::Camera) {
        runCase(rule, state.toText(), {});
        return;
    }
    const qsizetype count = m_bench.isPresent() ? m_bench.properties().size() : 0;
    for (qsizetype index = 0; index < count && m_bench.isPresent(); ++index) {
        m_bench.chooseProperty(index);
        runCase(rule, state.toText(),
                PPrintableText::toLine(QString::fromLatin1(m_bench.property().id())));
    }
}

void PCheckRunner::runCase(const PCheckRule& rule, const QString& state, const QString& property) {
    if (m_bench.isInterrupted())
        return;
    const QString where = property.isEmpty() ? state : u"%1, %2"_qs.arg(state, property);
    emit caseBegins(rule.id, where);
    const PCheckResult result = examine(rule);
    if (m_bench.isInterrupted())
        return; // what was waited for did not have its time
    m_report.add(rule, where, property, result);
    if (result.state == PCheckResult::State::Failed)
        emit caseFailed(rule, where, result.text);
}

PCheckResult PCheckRunner::examine(const PCheckRule& rule) {
    try {
        return rule.examine(m_bench);
    } catch (const std::exception& error) {
        return PCheckResult::failed(
            u"ended by an exception: %1"_qs.arg(QString::fromLocal8Bit(error.what())));
    } catch (...) { // drivers may throw anything
        return PCheckResult::failed(u"ended by an exception that has no text"_qs);
    }
}

/// Why the camera could not be brought into the state.
PStatus PCheckRunner::enter(const PCheckState& state) {
    if (!m_bench.isPresent())
        return PStatus::Ok; // each case reports this
    try {
        return m_bench.enter(state);
    } catch (const std::exception& error) {
        return PStatus::failure(QString::fromLocal8Bit(error.what()));
    }
}

QString PCheckRunner::reasonToSkip(const PCheckRule& rule) const {
    if (!rule.hazard.isEmpty() && !m_options.allowed.contains(rule.hazard))
        return u"needs --allow %1"_qs.arg(rule.hazard);
    for (const QString& needed : rule.needs) {
        if (m_report.hasFailed(needed))
            return u"needs %1"_qs.arg(needed);
    }
    return {};
}

/// The rules that a rule needs, and those that they need.
void PCheckRunner::addNeeds() {
    for (PCheckRule& rule : m_rules) {
        for (qsizetype i = 0; i < rule.needs.size(); ++i) {
            for (const PCheckRule& other : std::as_const(m_rules)) {
                if (other.id == rule.needs[i])
                    rule.needs += other.needs;
            }
        }
        rule.needs.removeDuplicates();
    }
}

#include "moc_PCheckRunner.cpp"
