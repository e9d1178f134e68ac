// SPDX-License-Identifier: MIT
#include <PCdGui/editor/PCoalescingSetter.h>

#include <PCdGui/editor/PRefusal.h>

#include <PCd/device/PDevice.h>
#include <PCd/property/PDeviceProperty.h>

#include <utility>

PCoalescingSetter::PCoalescingSetter(PDeviceProperty* property)
    : m_property(property) {
    m_turn.setSingleShot(true);
    connect(&m_turn, &QTimer::timeout, this, &PCoalescingSetter::takeTurn);
}

PCoalescingSetter::~PCoalescingSetter() = default;

void PCoalescingSetter::setCondition(Condition condition) {
    m_condition = std::move(condition);
}

void PCoalescingSetter::post(const QVariant& value) {
    m_value = value;
    if (!m_isAsking) // the answer is for this value too
        m_turn.start(0);
}

void PCoalescingSetter::drop() {
    m_turn.stop();
    m_value.clear();
}

void PCoalescingSetter::flush() {
    m_condition ? drop() : send();
}

/// A question opens from here and not from the control, which is still busy with its own event.
void PCoalescingSetter::takeTurn() {
    const QPointer<PCoalescingSetter> self(this);
    m_isAsking = true;
    const bool isAllowed = maySet();
    if (self.isNull())
        return;
    m_isAsking = false;
    if (isAllowed)
        return send();
    drop();
    emit settled();
}

bool PCoalescingSetter::maySet() const {
    if (!m_condition || !m_property || !m_value.isValid() || m_value == m_property->valueInner())
        return true;
    const Condition condition = m_condition; // this object may be deleted meanwhile
    const QVariant value = m_value;
    return condition(*m_property, value);
}

void PCoalescingSetter::send() {
    m_turn.stop();
    const QVariant value = std::exchange(m_value, QVariant());
    if (!m_property || !value.isValid())
        return;
    const PDevice* const device = m_property->device();
    if (device != nullptr && device->isGone())
        return;
    const QPointer<PCoalescingSetter> self(this);
    if (value != m_property->valueInner())
        set(value);
    if (self)
        emit settled();
}

void PCoalescingSetter::set(const QVariant& value) {
    const QVariant before = m_property->reportedValue();
    const QPointer<PCoalescingSetter> self(this);
    // A slot of valueChanged() may delete the property, or the editor and with it this object.
    m_property->setValue(value);
    if (self.isNull() || m_property.isNull() || m_property->isUnread())
        return;
    const QVariant now = m_property->valueInner();
    if (!PRefusal::isOne(before, value, now, m_property->rangeInner()))
        return;
    // If the device has just been unplugged, this is not a refusal.
    PDevice* const device = m_property->device();
    if (device == nullptr || device->isAnswering())
        emit refused();
}

#include "moc_PCoalescingSetter.cpp"
