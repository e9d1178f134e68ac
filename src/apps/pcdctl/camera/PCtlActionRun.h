// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/cli/PCtlOutcome.h>

#include <QList>
#include <QObject>

#include <chrono>
#include <optional>

class PCameraSession;
class PDeviceProperty;

/// Runs one action of a camera. Some actions run only during a stream, and report their end by
/// having the properties that they changed read again: those of the action's group. The main
/// thread.
class PCtlActionRun : public QObject {
    Q_OBJECT

public:
    PCtlActionRun(PCameraSession& session, PDeviceProperty& action);

    /// Starts the stream, runs the action, waits for its end up to the timeout, and stops the
    /// stream. An action that is alone in its group is over at once.
    PCtlOutcome run(std::optional<std::chrono::milliseconds> timeout);

    /// The properties that an action changes, in the order of its group.
    static QList<PDeviceProperty*> affectedProperties(PDeviceProperty& action);

protected:
    /// Sees the calls that the plugin posts to the properties.
    bool eventFilter(QObject* property, QEvent* event) override;

private:
    PCtlOutcome runLive(std::optional<std::chrono::milliseconds> timeout);

    PCameraSession& m_session;
    PDeviceProperty& m_action;
    QList<QObject*> m_unread; ///< properties that have not been read again yet
};
