// SPDX-License-Identifier: MIT
#include <apps/pcdctl/check/PCheckRunner.h>

#include <PCd/property/PDeviceProperty.h>

#include <PCore/PPrintableText.h>

#include <algorithm>

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

PCheckRunner::PCheckRunner(PCheckBench& bench, PHangWatch& watch, const QList<PCheckRule>& rules,
                           const PCheckOptions& options)
    : m_bench(bench)
    , m_watch(watch)
    , m_rules(rules)
    , m_options(options)
    , m_report(rules) {
    addNeeds();
}

PStatus PCheckRunner::open() {
    const auto isAboutOpening = [](const PCheckRule& rule) { return rule.id == u"open.link"; };
    const auto found = std::find_if(m_rules.begin(), m_rules.end(), isAboutOpening);
    m_place = {found == m_rules.end() ? m_rules.first() : *found, u"while it was opened"_qs};
    PStatus opened;
    {
        const PHangWatch::Entered entered(m_watch);
        m_bench.attempt([&] { opened = m_bench.open(); });
    }
    if (reportProblem()) {
        emit ruleEnded(m_place.rule);
        const QString reason = u"the camera could not be opened"_qs;
        m_report.endEarly(u"not examined: "_qs + reason);
        opened = PStatus::failure(reason);
    }
    if (!opened.isOk())
        close(); // here, where the watch sees it, and not in a destructor
    return opened;
}

bool PCheckRunner::run() {
    for (int i = 0; i < m_options.iterations && !m_bench.isInterrupted(); ++i)
        runOnce();
    putBack();
    close();
    if (m_bench.isInterrupted())
        m_report.endEarly(u"not examined: the check was interrupted"_qs);
    return !m_bench.isInterrupted();
}

void PCheckRunner::endEarly(const QString& seen) {
    m_report.add(m_place.rule, m_place.where, {}, PCheckResult::failed(seen));
    m_report.endEarly(u"not examined: the driver did not return in %1"_qs.arg(m_place.rule.id));
}

void PCheckRunner::putBack() {
    m_place.where = u"while settings were put back"_qs;
    {
        const PHangWatch::Entered entered(m_watch);
        m_bench.putBack();
    }
    reportProblem();
}

void PCheckRunner::close() {
    m_place.where = u"while it was closed"_qs;
    {
        const PHangWatch::Entered entered(m_watch);
        m_bench.close();
    }
    if (reportProblem())
        emit ruleEnded(m_place.rule); // again: it counted as passed until now
}

/// What went wrong before or after a case is a failure of its rule too. False if nothing did.
bool PCheckRunner::reportProblem() {
    const QString problem = m_bench.takeProblem();
    if (!problem.isEmpty())
        fail(problem);
    return !problem.isEmpty();
}

void PCheckRunner::fail(const QString& seen) {
    m_report.add(m_place.rule, m_place.where, {}, PCheckResult::failed(seen));
    emit caseFailed(m_place.rule, m_place.where, seen);
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
    putBack();
}

void PCheckRunner::runRule(const PCheckRule& rule, const PCheckState& state) {
    const QString reason = reasonToSkip(rule);
    if (!reason.isEmpty()) {
        m_report.add(rule, {}, {}, PCheckResult::skipped(reason));
        return;
    }
    if (m_bench.isInterrupted())
        return;
    m_place = {rule, state.toText()};
    const PStatus entered = enter(state);
    if (reportProblem())
        return;
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
    m_place = {rule, where};
    const PCheckResult result = examine(rule);
    if (m_bench.isInterrupted())
        return; // what was waited for did not have its time
    if (result.state == PCheckResult::State::Failed)
        fail(result.text);
    else
        m_report.add(rule, where, property, result);
}

PCheckResult PCheckRunner::examine(const PCheckRule& rule) {
    const PHangWatch::Entered entered(m_watch);
    PCheckResult result;
    m_bench.attempt([&] { result = rule.examine(m_bench); });
    const QString problem = m_bench.takeProblem();
    const bool isFailure = result.state == PCheckResult::State::Failed;
    return problem.isEmpty() || isFailure ? result : PCheckResult::failed(problem);
}

/// Why the camera could not be brought into the state.
PStatus PCheckRunner::enter(const PCheckState& state) {
    if (!m_bench.isPresent())
        return PStatus::Ok; // each case reports this
    const PHangWatch::Entered entered(m_watch);
    PStatus status;
    m_bench.attempt([&] { status = m_bench.enter(state); });
    return status;
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
