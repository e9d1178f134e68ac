// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/check/bench/PCheckRule.h>

#include <QHash>
#include <QJsonObject>
#include <QList>

/// The results of a check, by rule. A value; any thread.
class PCheckReport {
public:
    /// A case that failed: its state and property, and what was seen.
    struct Failure {
        QString where;
        QString seen;
    };
    /// The cases of one rule.
    struct Entry {
        PCheckRule rule;
        qint64 cases = 0; ///< that were examined
        qint64 failed = 0;
        QList<Failure> failures; ///< the first of them
        QString skipped;         ///< why a case was not examined; empty if all were
        QStringList inert;       ///< properties that nothing changes

        /// Skipped if no case was examined.
        PCheckResult::State state() const;
    };
    /// Numbers of rules, except for the cases.
    struct Totals {
        qint64 passed = 0;
        qint64 failed = 0;
        qint64 skipped = 0;
        qint64 cases = 0;
        qint64 failedCases = 0;
    };
    static constexpr qsizetype failuresKept = 5; ///< of a rule

    explicit PCheckReport(const QList<PCheckRule>& rules);

    /// Counts one case, in this state and for this property; without one for the whole camera.
    void add(const PCheckRule& rule, const QString& where, const QString& property,
             const PCheckResult& result);
    /// No further case comes: rules of which none was examined are skipped for this reason, unless
    /// they have another one.
    void endEarly(const QString& why);
    /// All rules, or one of them, in the order given at first.
    const QList<Entry>& entries() const { return m_entries; }
    const Entry& entry(const PCheckRule& rule) const;
    /// True if a case of the rule with this id failed.
    bool hasFailed(const QString& id) const;
    Totals totals() const;

    /// "passed", "failed" or "skipped".
    static QString stateName(PCheckResult::State state);
    /// {totals, rules: [{id, group, reason, state, cases, failed, …}]}.
    QJsonObject toJson() const;
    /// The document that servers of continuous integration read: a test suite for each group, a
    /// test case for each rule.
    QByteArray toJUnit(const QString& camera) const;

private:
    QList<Entry> m_entries;
    QHash<QString, qsizetype> m_indexes; ///< by id
};
