// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/PDeviceProperty.h>

#include <PCore/PExport.h>

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QVariant>

#include <functional>

/// Sends an editor's values to its property. Of the values posted during one turn of the event loop
/// only the last is set, so that a slider does not flood a camera. The last value is always set,
/// unless the property already has it. The GUI thread.
class PCD_TEST_EXPORT PCoalescingSetter : public QObject {
    Q_OBJECT

public:
    /// Whether a property may get a value; may ask the user, and delete this object meanwhile.
    using Condition = std::function<bool(const PDeviceProperty& property, const QVariant& value)>;

    explicit PCoalescingSetter(PDeviceProperty* property);
    ~PCoalescingSetter() override;

    /// Called before another value than the property's is set; if it returns false, the value is
    /// discarded.
    void setCondition(Condition condition);
    /// Sets the value in the next turn, unless another one is posted first.
    void post(const QVariant& value);
    /// True from post() until the value has been set.
    bool isWaiting() const { return m_value.isValid(); }
    /// Sets the pending value at once, or discards it if there is a condition, which cannot be
    /// asked now.
    void flush();
    /// Discards the pending value.
    void drop();

signals:
    /// The posted value was set or discarded, or the property already had it: the editor should
    /// show the property's present value.
    void settled();
    /// The device refused what was set, see PRefusal.
    void refused();

private:
    void takeTurn();
    bool maySet() const;
    void send();
    void set(const QVariant& value);

    QPointer<PDeviceProperty> m_property;
    Condition m_condition;
    bool m_isAsking = false; ///< the condition, which may run an event loop
    QVariant m_value;
    QTimer m_turn;
};
