// SPDX-License-Identifier: MIT
#include <apps/common/camera/PTriggerControl.h>

#include <PCd/device/PDevice.h>
#include <PCd/device/PDeviceRoles.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PPropertyRoles.h>
#include <PCd/property/value/PCompositeFields.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

using std::chrono::microseconds;

/// The duration of one unit of a part of the exposure time.
microseconds partLength(const PRoleBinding& part) {
    return microseconds(std::llround(part.toRole(1) * 1000));
}

/// The fields with a role; for times, the longest unit first.
PRoleBindings findFields(const PDeviceProperty& property, PRole role) {
    PRoleBindings fields = PPropertyRoles::of(property);
    fields.removeIf([&](const PRoleBinding& binding) {
        return binding.role != role || binding.field.isEmpty();
    });
    std::stable_sort(
        fields.begin(), fields.end(),
        [](const PRoleBinding& a, const PRoleBinding& b) { return partLength(a) > partLength(b); });
    return fields;
}

/// By what is declared: the value is not known while the camera does not report it.
bool hasTrigger(const PDeviceProperty* property) {
    if (property == nullptr)
        return false;
    const QByteArray fire = PPropertyRoles::method(*property, PRole::FireTrigger) + "(int)";
    return property->metaObject()->indexOfMethod(fire) >= 0 &&
           !findFields(*property, PRole::Triggered).isEmpty() &&
           !findFields(*property, PRole::TriggerTime).isEmpty();
}

PStatus writeText(QVariant& value, const PRoleBinding& field, const QString& text) {
    return PCompositeFields::write(value, QString::fromLatin1(field.field), text);
}

/// Whole numbers of the longer units; the shortest takes the rest. There is at least one part.
PStatus writeExposure(QVariant& value, PRoleBindings parts, microseconds exposure) {
    const PRoleBinding last = parts.takeLast();
    for (const PRoleBinding& part : std::as_const(parts)) {
        const PStatus status = writeText(value, part, QString::number(exposure / partLength(part)));
        if (!status.isOk())
            return status;
        exposure %= partLength(part);
    }
    const double rest = double(exposure.count()) / double(partLength(last).count());
    return writeText(value, last, QString::number(rest, 'g', 15));
}

using TimeRange = PMinMaxRange<double>;

std::optional<TimeRange> toTimeRange(const QVariant& range) {
    if (range.metaType() == QMetaType::fromType<TimeRange>())
        return range.value<TimeRange>();
    if (range.metaType() != QMetaType::fromType<PMinMaxRange<int>>())
        return std::nullopt;
    const auto whole = range.value<PMinMaxRange<int>>();
    return TimeRange{double(whole.minimum), double(whole.maximum), double(whole.step)};
}

/// The range, in milliseconds, of a property whose value is an exposure time, if it has one.
std::optional<TimeRange> readTimeRange(const PDeviceProperty& property) {
    const std::optional<TimeRange> range = toTimeRange(property.rangeInner());
    for (const PRoleBinding& time : PPropertyRoles::of(property)) {
        if (range && time.role == PRole::ExposureTime && time.isPlain())
            return TimeRange{time.toRole(range->minimum), time.toRole(range->maximum), 0};
    }
    return std::nullopt;
}

} // namespace

/// Checks against the range of the plain exposure time, if the camera has that property.
PStatus PTriggerControl::checkExposure(const QVariant& value) const {
    const double time = toMilliseconds(value);
    if (!m_timeRange || (time >= m_timeRange->minimum && time <= m_timeRange->maximum))
        return PStatus::Ok;
    return PStatus::failure(tr("an exposure time of %1 s is not possible: expected %2 s to %3 s")
                                .arg(QString::number(time / 1e3),
                                     QString::number(m_timeRange->minimum / 1e3),
                                     QString::number(m_timeRange->maximum / 1e3)));
}

PTriggerControl::PTriggerControl(PDevice& device)
    : m_property(nullptr) {
    device.supportProperties();
    PDeviceProperty* const property = PDeviceRoles::compositeProperty(device, PRole::Triggered);
    if (hasTrigger(property))
        m_property = property;
    if (const PDeviceProperty* const time =
            PDeviceRoles::plainProperty(device, PRole::ExposureTime))
        m_timeRange = readTimeRange(*time);
}

double PTriggerControl::toMilliseconds(const QVariant& value) const {
    return PRoleValue{{}, value, PPropertyRoles::of(*m_property)}
        .number(PRole::TriggerTime)
        .value_or(0);
}

PStatus PTriggerControl::prepare(Source source, std::optional<microseconds> exposure, int frames) {
    if (m_property == nullptr)
        return PStatus::failure(tr("the camera does not support triggered capture"));
    if (m_property->isUnread())
        m_property->updateValueFromDevice();
    if (m_property->isUnread()) // fields that are not known would be sent with those below
        return PStatus::failure(
            tr("the camera did not report \"%1\"").arg(QString::fromLatin1(m_property->id())));
    QVariant value = m_property->reportedValue();
    PStatus status =
        exposure ? writeExposure(value, findFields(*m_property, PRole::TriggerTime), *exposure)
                 : PStatus(PStatus::Ok);
    if (status.isOk())
        status = checkExposure(value);
    const std::pair<PRole, int> numbers[]{
        {PRole::TriggerCount, frames},
        {PRole::TriggerSource, source == Source::External ? 1 : 0},
        {PRole::Triggered, 1}};
    for (const auto& [role, number] : numbers) {
        for (const PRoleBinding& field : findFields(*m_property, role)) {
            if (status.isOk())
                status = writeText(value, field, QString::number(number));
        }
    }
    if (status.isOk())
        m_property->setValue(value);
    return status;
}

PStatus PTriggerControl::fire(int frames) {
    bool fired = false;
    const QByteArray method = PPropertyRoles::method(*m_property, PRole::FireTrigger);
    QMetaObject::invokeMethod(m_property, method.constData(), Qt::DirectConnection,
                              Q_RETURN_ARG(bool, fired), Q_ARG(int, frames));
    return fired ? PStatus(PStatus::Ok)
                 : PStatus::failure(tr("the camera refused triggered capture"));
}

microseconds PTriggerControl::exposure() const {
    return microseconds(std::llround(toMilliseconds(m_property->reportedValue()) * 1000));
}
