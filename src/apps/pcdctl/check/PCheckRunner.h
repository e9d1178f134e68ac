// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/check/PCheckReport.h>
#include <apps/pcdctl/check/bench/PCheckBench.h>
#include <apps/pcdctl/check/bench/PHangWatch.h>
#include <apps/pcdctl/cli/PCheckOptions.h>

#include <QObject>

/// Examines a camera: makes the cases of all rules, of modes, states and properties, and runs them.
/// The main thread.
class PCheckRunner : public QObject {
    Q_OBJECT

public:
    /// The watch is told when the driver is entered and left.
    PCheckRunner(PCheckBench& bench, PHangWatch& watch, const QList<PCheckRule>& rules,
                 const PCheckOptions& options);

    /// Opens the camera; see PCheckBench. What the driver throws meanwhile is a failure in the
    /// report. If it fails, the camera is closed.
    PStatus open();
    /// Runs all cases, sets the camera's settings back, and closes it. False if the user
    /// interrupted.
    bool run();

    const PCheckReport& report() const { return m_report; }

    /// What is examined now: a rule, and the case in words.
    struct Place {
        PCheckRule rule;
        QString where;
    };
    /// The watch's thread may call this and the following in the watch's report.
    const Place& place() const { return m_place; }
    /// Counts what is examined now as failed, and all that was not yet examined as skipped.
    void endEarly(const QString& seen);

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
    void putBack();
    void close();
    bool reportProblem();
    void fail(const QString& seen);
    PStatus enter(const PCheckState& state);
    QString reasonToSkip(const PCheckRule& rule) const;
    void addNeeds();

    PCheckBench& m_bench;
    PHangWatch& m_watch;
    QList<PCheckRule> m_rules;
    const PCheckOptions m_options;
    PCheckReport m_report;
    Place m_place;
};
