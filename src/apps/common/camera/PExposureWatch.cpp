// SPDX-License-Identifier: MIT
#include <apps/common/camera/PExposureWatch.h>

#include <apps/common/camera/PCaptureMode.h>

#include <PCd/device/PDevice.h>
#include <PCd/device/PDeviceRoles.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PPropertyRoles.h>

#include <QScopedValueRollback>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

// Automatic exposure comes before time and gain, which a camera keeps only while it is off.
enum Setting : std::size_t { Automatic, Time, Gain, Target };

constexpr std::array<PRole, 4> watchedRoles{PRole::AutoExposure, PRole::ExposureTime, PRole::Gain,
                                            PRole::ExposureTarget};

constexpr int readingsToSettle = 3;
constexpr quint64 framesToSettle = 3;    // automatic exposure changes from frame to frame
constexpr double panelsRoundBy = 0.0051; // milliseconds: panels show hundredths

std::array<PDeviceProperty*, 4> findPlainSettings(const PDevice& device) {
    std::array<PDeviceProperty*, 4> plain{};
    for (std::size_t i = 0; i < watchedRoles.size(); ++i)
        plain[i] = PDeviceRoles::plainProperty(device, watchedRoles[i]);
    return plain;
}

/// Whether a setting was not read now that was read before. One that never was is not waited for.
bool isAnyLost(const std::array<PDeviceProperty*, 4>& plain) {
    return std::any_of(plain.begin(), plain.end(), [](const PDeviceProperty* property) {
        return property != nullptr && property->isUnread() && property->reportedValue().isValid();
    });
}

} // namespace

PExposureWatch::PExposureWatch(PDevice* device, std::chrono::milliseconds interval)
    : m_device(device)
    , m_plain(findPlainSettings(*device))
    , m_composite(PDeviceRoles::compositeProperty(*device, PRole::ExposureTime)) {
    if (m_composite != nullptr)
        connect(m_composite, &PDeviceProperty::valueChanged, this, &PExposureWatch::takeRecord);
    if (const PDeviceProperty* const property = m_plain[Automatic]) {
        // From then on the camera keeps its exposure, and later settings of the user must stay.
        connect(property, &PDeviceProperty::valueChanged, this, [this](const QVariant& on) {
            if (on.isValid() && !on.toBool())
                m_found.reset();
        });
    }
    connect(&m_timer, &QTimer::timeout, this, &PExposureWatch::look);
    m_timer.start(interval);
    look();
}

PExposureWatch::Reading PExposureWatch::read() const {
    Reading reading;
    for (std::size_t i = 0; i < watchedRoles.size(); ++i) {
        if (PDeviceProperty* const property = m_plain[i]) {
            property->updateValueFromDevice();
            reading[i] = property->valueInner();
        }
    }
    return reading;
}

void PExposureWatch::look() {
    if (m_device.isNull() || m_device->isGone())
        return;
    // A new panel reads the composite value without emitting.
    if (m_composite != nullptr && m_composite->reportedValue() != m_record)
        m_record = m_shown = m_composite->reportedValue();
    const Reading now = read();
    if (isAnyLost(m_plain))
        return; // until the camera answers
    // An exposure time is never 0: reading failed, for example because the cable was just pulled.
    if (now[Time].isValid() && now[Time].toDouble() <= 0)
        return;
    m_found = now[Automatic].toBool() ? std::optional(now) : std::nullopt;
    if (std::exchange(m_last, now) != now)
        return beginToSettle();
    ++m_unchanged;
    if (m_isSettling && hasSettled()) {
        m_isSettling = false;
        refreshRecord(now);
    }
}

void PExposureWatch::takeRecord(const QVariant& value) {
    if (m_isRefreshing)
        return;
    const bool isHeld = m_found && isOnlySwitchedOff(value);
    m_record = m_shown = value;
    beginToSettle();
    if (isHeld)
        hold(*std::exchange(m_found, std::nullopt));
}

void PExposureWatch::hold(const Reading& found) {
    Reading wanted = read();
    wanted[Time] = found[Time];
    wanted[Gain] = found[Gain];
    putBack(wanted);
    refreshRecord(wanted);
}

bool PExposureWatch::isAutomatic(const QVariant& record) const {
    return PRoleValue{{}, record, PPropertyRoles::of(*m_composite)}.isOn(PRole::AutoExposure);
}

bool PExposureWatch::hasSameExposure(const QVariant& a, const QVariant& b) const {
    const PRoleBindings bindings = PPropertyRoles::of(*m_composite);
    const PRoleValue before{{}, a, bindings};
    const PRoleValue now{{}, b, bindings};
    const auto time = [](const PRoleValue& record) {
        return record.number(PRole::ExposureTime).value_or(0);
    };
    return std::abs(time(before) - time(now)) < panelsRoundBy &&
           before.part(PRole::Gain) == now.part(PRole::Gain);
}

/// A panel sends its whole record with each change, so all other fields are unchanged.
bool PExposureWatch::isOnlySwitchedOff(const QVariant& value) const {
    return isAutomatic(m_record) && !isAutomatic(value) && !PCaptureMode::isTriggered(*m_device) &&
           (hasSameExposure(m_record, value) || hasSameExposure(m_shown, value));
}

void PExposureWatch::beginToSettle() {
    m_isSettling = true;
    m_unchanged = 0;
    m_framesAtChange = m_device->frameLedger().produced;
}

bool PExposureWatch::hasSettled() const {
    if (m_unchanged < readingsToSettle || PCaptureMode::isTriggered(*m_device))
        return false;
    const bool mayMove = m_last[Automatic].toBool() && m_device->isStreaming();
    return !mayMove || m_device->frameLedger().produced >= m_framesAtChange + framesToSettle;
}

/// The camera ends up with the wanted settings, which it already has. Nothing is sent unless a
/// panel responds by writing: automatic exposure may have moved between two readings.
void PExposureWatch::refreshRecord(const Reading& wanted) {
    if (m_composite == nullptr)
        return;
    const QScopedValueRollback<bool> inside(m_isRefreshing, true);
    bool isAnswered = false;
    const auto answers = connect(m_composite, &PDeviceProperty::valueAboutToBeSent, this,
                                 [&isAnswered] { isAnswered = true; });
    m_composite->updateValueFromDevice();
    disconnect(answers);
    m_shown = m_composite->reportedValue();
    // A panel writes back what it then shows, which may be rounded or clamped. The second time its
    // controls do not change, so it writes nothing.
    if (isAnswered) {
        putBack(wanted);
        m_composite->updateValueFromDevice();
    }
    m_record = m_composite->reportedValue();
}

/// Sets each setting in which the camera differs; not those that automatic exposure chooses.
void PExposureWatch::putBack(const Reading& wanted) {
    const bool isAutomatic = wanted[Automatic].toBool();
    const Reading now = read();
    for (std::size_t i = 0; i < watchedRoles.size(); ++i) {
        const bool isChosen = isAutomatic && (i == Time || i == Gain);
        // What was not read would be sent as a zero.
        if (!isChosen && wanted[i].isValid() && now[i] != wanted[i])
            m_plain[i]->setValue(wanted[i]);
    }
}

#include "moc_PExposureWatch.cpp"
