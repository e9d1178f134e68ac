// SPDX-License-Identifier: MIT
#include <apps/common/camera/PTriggerControl.h>

#include <PCd/device/PDevice.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/value/PCompositeFields.h>

#include <PCore/PMinMaxRange.h>

#include <utility>

namespace {

using std::chrono::microseconds;

/// A part of the exposure time: its field and how long one of it is.
struct Part {
    const char* field;
    microseconds unit;
};

constexpr Part timeParts[]{{"minutes", microseconds(60'000'000)},
                           {"seconds", microseconds(1'000'000)},
                           {"milliseconds", microseconds(1'000)},
                           {"microseconds", microseconds(1)}};

QString nameOf(const char* field) {
    return QString::fromLatin1(field);
}

bool hasTrigger(const PDeviceProperty* property) {
    return property != nullptr && property->metaObject()->indexOfMethod("fireTrigger(int)") >= 0 &&
           PCompositeFields::names(property->valueInner()).contains(nameOf("capturemode"));
}

PStatus writeNumber(QVariant& value, const char* field, qint64 number) {
    return PCompositeFields::write(value, nameOf(field), QString::number(number));
}

/// Microseconds; in double, which fields of any size fit.
double totalOf(const QVariant& value) {
    double sum = 0;
    for (const Part& part : timeParts)
        sum += PCompositeFields::read(value, nameOf(part.field)).toDouble() *
               double(part.unit.count());
    return sum;
}

PStatus writeExposure(QVariant& value, microseconds exposure) {
    for (const Part& part : timeParts) {
        const PStatus status = writeNumber(value, part.field, exposure / part.unit);
        if (!status.isOk())
            return status;
        exposure %= part.unit;
    }
    return PStatus::Ok;
}

} // namespace

/// By the range of the plain exposure time, where the camera has that.
PStatus PTriggerControl::checkExposure(const QVariant& value) const {
    const double time = totalOf(value);
    const auto range = m_timeRange.value<PMinMaxRange<int>>();
    if (!m_timeRange.isValid() || (time >= range.minimum && time <= range.maximum))
        return PStatus::Ok;
    return PStatus::failure(tr("an exposure time of %1 s is not possible: expected %2 s to %3 s")
                                .arg(time / 1e6)
                                .arg(range.minimum / 1e6)
                                .arg(range.maximum / 1e6));
}

PTriggerControl::PTriggerControl(PDevice& device)
    : m_property(nullptr) {
    device.supportProperties();
    PDeviceProperty* const property = device.getProperty("extexposure");
    if (hasTrigger(property))
        m_property = property;
    if (const PDeviceProperty* const time = device.getProperty("autoexpottime"))
        m_timeRange = time->rangeInner();
}

PStatus PTriggerControl::prepare(Source source, std::optional<microseconds> exposure, int frames) {
    if (m_property == nullptr)
        return PStatus::failure(tr("the camera has no triggered capture"));
    QVariant value = m_property->valueInner();
    PStatus status = exposure ? writeExposure(value, *exposure) : PStatus(PStatus::Ok);
    if (status.isOk())
        status = checkExposure(value);
    const std::pair<const char*, qint64> fields[]{
        {"spincount", frames},
        {"triggermode", source == Source::External ? 1 : 0},
        {"capturemode", 1}};
    for (const auto& [field, number] : fields) {
        if (status.isOk())
            status = writeNumber(value, field, number);
    }
    if (status.isOk())
        m_property->setValue(value);
    return status;
}

PStatus PTriggerControl::fire(int frames) {
    bool fired = false;
    QMetaObject::invokeMethod(m_property, "fireTrigger", Qt::DirectConnection,
                              Q_RETURN_ARG(bool, fired), Q_ARG(int, frames));
    return fired ? PStatus(PStatus::Ok)
                 : PStatus::failure(tr("the camera refused to be triggered"));
}

microseconds PTriggerControl::exposure() const {
    return microseconds(qint64(totalOf(m_property->valueInner())));
}
