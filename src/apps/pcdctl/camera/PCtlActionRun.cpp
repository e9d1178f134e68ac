// SPDX-License-Identifier: MIT
#include <apps/pcdctl/camera/PCtlActionRun.h>

#include <apps/pcdctl/camera/PCameraSession.h>

#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PDevicePropertyGroup.h>

#include <QEvent>

PCtlActionRun::PCtlActionRun(PCameraSession& session, PDeviceProperty& action)
    : m_session(session)
    , m_action(action) {
}

QList<PDeviceProperty*> PCtlActionRun::affectedProperties(PDeviceProperty& action) {
    QList<PDeviceProperty*> others;
    for (const PDevicePropertyGroup* group : action.device()->supportPropertyGroups()) {
        const QList<PDeviceProperty*> members = group->properties();
        if (members.contains(&action))
            others += members;
    }
    others.removeAll(&action);
    return others;
}

PCtlOutcome PCtlActionRun::run(std::optional<std::chrono::milliseconds> timeout) {
    PCtlOutcome outcome = m_session.startLive(timeout);
    if (outcome.isDone())
        outcome = runLive(timeout);
    const PStatus stopped = m_session.stopLive();
    if (outcome.isDone() && m_session.isUnplugged())
        return PCtlOutcome::failed(m_session.reasonWithout(u"the end of the stream"_qs));
    return outcome.isDone() && !stopped.isOk() ? PCtlOutcome::failed(stopped.reason()) : outcome;
}

PCtlOutcome PCtlActionRun::runLive(std::optional<std::chrono::milliseconds> timeout) {
    for (PDeviceProperty* property : affectedProperties(m_action)) {
        m_unread.append(property);
        property->installEventFilter(this);
    }
    const QString id = QString::fromLatin1(m_action.id());
    if (!m_action.trySetValue(QVariant()))
        return PCtlOutcome::failed(u"the camera refused to run \"%1\""_qs.arg(id));
    if (m_session.waitFor([this] { return m_unread.isEmpty(); },
                          timeout.value_or(m_session.longestAnswer())))
        return {};
    return PCtlOutcome::failed(
        m_session.reasonWithout(u"a report that \"%1\" has ended"_qs.arg(id)));
}

bool PCtlActionRun::eventFilter(QObject* property, QEvent* event) {
    if (event->type() == QEvent::MetaCall)
        m_unread.removeAll(property);
    return false;
}

#include "moc_PCtlActionRun.cpp"
