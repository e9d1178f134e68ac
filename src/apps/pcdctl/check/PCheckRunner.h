// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/check/PCheckReport.h>
#include <apps/pcdctl/check/bench/PCheckBench.h>
#include <apps/pcdctl/cli/PCheckOptions.h>

#include <QObject>

/// Examines a camera: makes the cases of all rules, of modes, states and properties, and runs them.
/// The main thread.
class PCheckRunner : public QObject {
    Q_OBJECT

public:
    PCheckRunner(PCheckBench& bench, const QList<PCheckRule>& rules, const PCheckOptions& options);

    /// Runs all cases, and sets the camera's settings back. False if the user interrupted.
    bool run();

    const PCheckReport& report() const { return m_report; }

signals:
    /// A case is about to be run.
    void caseBegins(const QString& rule, const QString& where);
    /// A case has failed.
    void caseFailed(const PCheckRule& rule, const QString& where, const QString& seen);
    /// All cases of a rule in this iteration have been run.
    void ruleEnded(const PCheckRule& rule);

private:
    void runOnce();
    void runGroup(const QList<PCheckRule>& rules);
    void runState(const QList<PCheckRule>& rules, const PCheckState& state);
    void runRule(const PCheckRule& rule, const PCheckState& state);
    void runCase(const PCheckRule& rule, const QString& state, const QString& property);
    PCheckResult examine(const PCheckRule& rule);
    PStatus enter(const PCheckState& state);
    QString reasonToSkip(const PCheckRule& rule) const;
    void addNeeds();

    PCheckBench& m_bench;
    QList<PCheckRule> m_rules;
    const PCheckOptions m_options;
    PCheckReport m_report;
};
