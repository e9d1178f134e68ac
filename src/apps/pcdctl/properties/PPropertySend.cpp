// SPDX-License-Identifier: MIT
#include <apps/pcdctl/properties/PPropertySend.h>

#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PPropertyCheck.h>
#include <PCd/property/value/PPropertyText.h>

QString PPropertySend::send(PDeviceProperty& property, const QVariant& value) {
    const PPropertyCheck::Outcome outcome = PPropertyCheck::send(property, value);
    if (outcome == PPropertyCheck::Outcome::Taken)
        return {};
    const QVariant range = property.rangeInner();
    const QString requested = PPropertyText::ofValue(value, range);
    if (outcome == PPropertyCheck::Outcome::Unread)
        return unreadReason(requested);
    return u"requested %1, the camera has %2"_qs.arg(
        requested, PPropertyText::ofValue(property.valueInner(), range));
}

QString PPropertySend::unreadReason(const QString& requested) {
    return u"requested %1, the camera did not report what it has"_qs.arg(requested);
}
