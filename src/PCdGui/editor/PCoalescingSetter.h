// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/PDeviceProperty.h>

#include <PCore/PExport.h>

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QVariant>

/// Sends an editor's values to its property. Of the values posted during one turn of the event loop
/// only the last is set, so that a slider does not flood a camera. The last value is always set,
/// unless the property already has it. The GUI thread.
class PCD_TEST_EXPORT PCoalescingSetter : public QObject {
    Q_OBJECT

public:
    explicit PCoalescingSetter(PDeviceProperty* property);
    ~PCoalescingSetter() override;

    /// Sets the value in the next turn, unless another one is posted first.
    void post(const QVariant& value);
    /// True from post() until the value has been set.
    bool isWaiting() const { return m_value.isValid(); }
    /// Sets the pending value at once.
    void flush();
    /// Discards the pending value.
    void drop();

signals:
    /// The posted value was set, or the property already had it: the editor should show the
    /// property's present value.
    void settled();
    /// The device refused what was set, see PRefusal.
    void refused();

private:
    void set(const QVariant& value);

    QPointer<PDeviceProperty> m_property;
    QVariant m_value;
    QTimer m_turn;
};
