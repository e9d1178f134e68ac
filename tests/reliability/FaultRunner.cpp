// SPDX-License-Identifier: MIT
#include <reliability/FaultRunner.h>

#include <reliability/CallHook.h>
#include <reliability/ReliableCamera.h>
#include <reliability/ScriptedSession.h>
#include <reliability/ShortWait.h>

#include <support/WaitUntil.h>

#include <PCdGui/PCdGui.h>

#include <toupcam/sim/api/toupcamsim.h>

#include <algorithm>

namespace {

// For what a fault has kept from coming. Too short for a busy machine only means that the session
// with the fault ends earlier.
constexpr std::chrono::milliseconds patienceWithFaults(30);
constexpr std::chrono::seconds longestSession(120);

bool areHarmless(const CallFaults& faults) {
    return std::all_of(faults.begin(), faults.end(),
                       [](const CallFault& fault) { return fault.kind->isHarmless; });
}

/// Whether the SDK reports what happens. Absurd values that come with success are believed.
bool areReported(const CallFaults& faults) {
    return std::all_of(faults.begin(), faults.end(), [](const CallFault& fault) {
        return fault.kind->answer == TOUPCAMSIM_PASS || fault.kind->answer == TOUPCAMSIM_FAIL;
    });
}

QStringList prefixed(const QString& prefix, const QStringList& texts) {
    QStringList result;
    for (const QString& text : texts)
        result.append(prefix + text);
    return result;
}

} // namespace

FaultRunner::FaultRunner()
    : m_watchdog(longestSession) {
    qputenv("TOUPCAM_LIBRARY", SDK_LIBRARY);
    PCdGui::install();
    ReliableCamera::install();
    m_watchdog.watch("the first session");
    runSession({}); // threads and descriptors that are made once
    m_idle = ProcessState::now();
}

FaultRunner::~FaultRunner() {
    ToupcamSim_reset();
}

std::vector<SdkCall> FaultRunner::calls() {
    return CallHook::calls();
}

QStringList FaultRunner::runWithout() {
    m_watchdog.watch("a session without faults");
    QStringList complaints = runSession({});
    addLeaks(complaints);
    m_watchdog.rest();
    return complaints;
}

QStringList FaultRunner::runWith(const CallFaults& faults) {
    const QString name = text(faults);
    m_watchdog.watch("scripts/faults --case '" + name.toStdString() + "'");
    QStringList complaints = runSession(faults);
    const std::size_t happened = CallHook::happened();
    if (happened == 0)
        complaints.append(u"the call was not made"_qs);
    m_faultsHappened += happened;
    ++m_sessions;
    addLeaks(complaints);
    m_watchdog.watch("the session after scripts/faults --case '" + name.toStdString() + "'");
    complaints += prefixed(u"in the session after it: "_qs, runSession({}));
    addLeaks(complaints);
    m_watchdog.rest();
    return complaints;
}

/// What is wrong with one session: what it says and is not so, and, without faults, what failed.
QStringList FaultRunner::runSession(const CallFaults& faults) {
    const bool mustSucceed = areHarmless(faults);
    ScriptedSession session(m_folder.path(), mustSucceed ? longestWait() : patienceWithFaults);
    CallHook::begin(faults);
    session.run();
    CallHook::end();
    ToupcamSim_plug(ReliableCamera::id); // a fault may have left it unplugged
    ToupcamSim_clearJournal();
    QStringList complaints = prefixed(u"not true: "_qs, session.lies());
    if (mustSucceed)
        complaints += prefixed(u"failed: "_qs, session.failures());
    if (areReported(faults))
        complaints += prefixed(u"saved, but not so: "_qs, session.unreadValues()) +
                      prefixed(u"shown, but not so: "_qs, session.wronglyShown());
    else if (!session.unreadValues().isEmpty())
        ++m_deceivedProfiles;
    return complaints;
}

void FaultRunner::addLeaks(QStringList& complaints) const {
    if (const unsigned handles = ToupcamSim_openHandles(); handles > 0)
        complaints.append(u"%1 handles are still open"_qs.arg(handles));
    // A thread that has been joined may still be listed for a moment.
    const auto isIdle = [this] { return ProcessState::now().isIdleAs(m_idle); };
    if (!waitShortly(isIdle, std::chrono::seconds(5)))
        complaints.append(u"the process holds %1 instead of %2: %3"_qs.arg(
            ProcessState::now().text(), m_idle.text(), ProcessState::threadNames()));
}

QString FaultRunner::text(const CallFaults& faults) {
    QStringList texts;
    for (const CallFault& fault : faults)
        texts.append(fault.text());
    return texts.join(u'+');
}

CallFaults FaultRunner::parse(const QString& text) {
    CallFaults faults;
    for (const QString& part : text.split(u'+')) {
        const std::optional<CallFault> fault = CallFault::parse(part);
        if (!fault)
            return {};
        faults.push_back(*fault);
    }
    return faults;
}
