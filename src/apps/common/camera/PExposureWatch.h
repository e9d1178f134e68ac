// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QVariant>

#include <array>
#include <chrono>
#include <optional>

class PDevice;
class PDeviceProperty;

/// Keeps the cached exposure of a camera up to date, as the camera does not report changes.
///
/// It polls the plain settings, so that frames are stamped with the values of automatic exposure.
/// Once a change of them has settled, it refreshes the composite property, once, for the panel that
/// shows it; not while automatic exposure is still moving, and not in triggered capture, where the
/// composite property would take the triggered time for the live one. If the only change of the
/// composite property was switching automatic exposure off, it restores the last automatic time and
/// gain, because the panel has just sent older ones.
///
/// Works from its construction until it or the device is destroyed. The device's thread.
class PExposureWatch : public QObject {
    Q_OBJECT

public:
    /// The property list must have been built.
    explicit PExposureWatch(PDevice* device,
                            std::chrono::milliseconds interval = std::chrono::milliseconds(200));

private:
    /// Values of the plain settings; invalid where the camera has none.
    using Reading = std::array<QVariant, 4>;

    Reading read() const;
    void look();
    void takeRecord(const QVariant& value);
    bool isAutomatic(const QVariant& record) const;
    bool hasSameExposure(const QVariant& a, const QVariant& b) const;
    bool isOnlySwitchedOff(const QVariant& value) const;
    void beginToSettle();
    bool hasSettled() const;
    void hold(const Reading& found);
    void refreshRecord(const Reading& wanted);
    void putBack(const Reading& wanted);

    QPointer<PDevice> m_device;
    std::array<PDeviceProperty*, 4> m_plain; ///< the device's; null where it has none
    PDeviceProperty* m_composite;            ///< likewise
    QTimer m_timer;
    Reading m_last;
    std::optional<Reading> m_found; ///< the last one with automatic exposure on
    QVariant m_record;              ///< the composite value as last known
    QVariant m_shown;               ///< the same as a panel shows it, rounded or clamped
    int m_unchanged = 0;            ///< readings
    quint64 m_framesAtChange = 0;
    bool m_isSettling = false;
    bool m_isRefreshing = false;
};
