// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/value/PRole.h>

#include <PCore/PMinMaxRange.h>

#include <QString>

#include <optional>

class PDeviceProperty;

/// The unit in which Python has a property: that of its role, if the device's is another one. A
/// value type; the device's thread.
class PPythonUnit {
public:
    explicit PPythonUnit(const PDeviceProperty& property);

    /// The name of a role in Python, "auto_exposure"; empty for one that has none there.
    static QString roleName(PRole role);
    /// The role's name, or empty without a plain role.
    QString name() const { return m_binding ? roleName(m_binding->role) : QString(); }
    /// True if numbers of the device are converted.
    bool isConverted() const;
    /// "ms", "°C", "µs"; empty for a plain number.
    QString text() const { return m_text; }
    /// A whole number of the device in the unit, and the nearest one of the device.
    double fromDevice(double number) const;
    double toDevice(double number) const;
    /// The step of a range of the device, at its beginning, in the unit.
    double stepFromDevice(const PMinMaxRange<double>& range) const;

private:
    std::optional<PRoleBinding> m_binding; ///< of the value as a whole
    QString m_text;
};
