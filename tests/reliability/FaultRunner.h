// SPDX-License-Identifier: MIT
#pragma once

#include <reliability/CallFault.h>
#include <reliability/ProcessState.h>
#include <reliability/Watchdog.h>

#include <QStringList>
#include <QTemporaryDir>

/// Runs the scripted session with faults and without, and checks what must hold after each. The
/// main thread.
class FaultRunner {
public:
    FaultRunner();
    ~FaultRunner();
    FaultRunner(const FaultRunner&) = delete;
    FaultRunner& operator=(const FaultRunner&) = delete;

    /// A session without faults: what is wrong with it, in words; empty if all is well.
    QStringList runWithout();
    /// The calls of the last session.
    static std::vector<SdkCall> calls();
    /// A session with these faults and one without after it: what is wrong, in words.
    QStringList runWith(const CallFaults& faults);

    /// The faults that have happened, and the sessions in which they have.
    std::size_t faultsHappened() const { return m_faultsHappened; }
    std::size_t sessions() const { return m_sessions; }
    /// The sessions that saved an absurd value which the SDK had reported with success.
    std::size_t deceivedProfiles() const { return m_deceivedProfiles; }

    /// Faults as a text, with "+" between them, as PCD_FAULTS_CASE takes it, and back; none if it
    /// is not understood.
    static QString text(const CallFaults& faults);
    static CallFaults parse(const QString& text);

private:
    QStringList runSession(const CallFaults& faults);
    void addLeaks(QStringList& complaints) const;

    QTemporaryDir m_folder;
    Watchdog m_watchdog;
    ProcessState m_idle; ///< after the first session
    std::size_t m_faultsHappened = 0;
    std::size_t m_sessions = 0;
    std::size_t m_deceivedProfiles = 0;
};
