// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/PDeviceProperty.h>

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QVariant>

/// The way from an editor to its property. Of the values posted during one turn of the event loop
/// only the last is set, so that a slider does not flood a camera; that last one always is, unless
/// the property has it already. The GUI thread.
class PCoalescingSetter : public QObject {
    Q_OBJECT

public:
    explicit PCoalescingSetter(PDeviceProperty* property);
    ~PCoalescingSetter() override;

    /// Sets the value in the next turn, unless another one is posted before.
    void post(const QVariant& value);
    /// True from post() until the value has been set.
    bool isWaiting() const { return m_value.isValid(); }
    /// Sets what waits now.
    void flush();
    /// Forgets what waits.
    void drop();

signals:
    /// What was posted has been set, or the property had it already: what it has now is to be
    /// shown.
    void settled();
    /// The device refused what was set, see PRefusal.
    void refused();

private:
    void set(const QVariant& value);

    QPointer<PDeviceProperty> m_property;
    QVariant m_value;
    QTimer m_turn;
};
