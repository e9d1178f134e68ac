// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

class PCheckBench;

/// What one case of a rule showed. A value; any thread.
struct PCheckResult {
    /// Whether the camera obeys the rule; skipped if that could not be examined.
    enum class State { Passed, Failed, Skipped };
    /// What a property does that the camera lacks, or the driver does not send.
    static QString inertText() { return u"nothing that is set changes it"_qs; }

    /// What is seen of an exception that left the driver; null for one that has no text.
    static QString describeException(const char* text) {
        return text == nullptr ? u"ended by an unknown exception"_qs
                               : u"ended by an exception: %1"_qs.arg(QString::fromLocal8Bit(text));
    }

    State state = State::Passed;
    QString text; ///< what was seen, or why it was skipped; empty if passed

    static PCheckResult failed(const QString& seen) { return {State::Failed, seen}; }
    static PCheckResult skipped(const QString& why) { return {State::Skipped, why}; }
    /// Passed if there is nothing to say.
    static PCheckResult unless(const QString& problem) {
        return problem.isEmpty() ? PCheckResult() : failed(problem);
    }
};

/// One thing that a device and its plugin must do, and the function that examines it. A value; any
/// thread.
struct PCheckRule {
    /// In which states of the camera it is examined.
    enum class Where {
        Once,      ///< as the camera is, not streaming
        Modes,     ///< in each mode, not streaming
        Streaming, ///< in each mode, streaming
        States,    ///< in each mode, first not streaming, then streaming
    };
    /// How often it is examined in each of these states.
    enum class For { Camera, EachProperty };

    QString id;     ///< stable: "group.words-with-dashes"
    QString reason; ///< the rule, and why it is one
    QString hint;   ///< what to look at when it fails
    Where where = Where::Once;
    For subject = For::Camera;
    /// Examines the camera on the bench: one case. What it sets, it sets back.
    PCheckResult (*examine)(PCheckBench&) = nullptr;
    QStringList needs = {}; ///< ids: skipped if the camera breaks one of these
    QString hazard = {};    ///< skipped unless the user allows this; empty: none

    /// The part of the id before the point.
    QString group() const { return id.section(u'.', 0, 0); }
};
