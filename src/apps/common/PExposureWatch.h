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

/// Keeps a program's copy of a camera's exposure true, as the camera tells nothing by itself.
///
/// It reads the plain settings again and again, so that frames carry what automatic exposure has
/// chosen. A change of them that has settled is read into the composite property too, once, for the
/// panel that shows it: not while automatic exposure moves, nor in triggered capture, whose time
/// the composite property would take for that of the live stream. And where nothing but automatic
/// exposure was switched off in the composite property, the camera gets back the time and gain
/// found last: the panel has sent those from before.
///
/// From its construction to its end, or the device's. The device's thread.
class PExposureWatch : public QObject {
    Q_OBJECT

public:
    /// The property list must have been built.
    explicit PExposureWatch(PDevice* device,
                            std::chrono::milliseconds interval = std::chrono::milliseconds(200));

private:
    /// Values of the plain settings; invalid where the camera has none.
    using Reading = std::array<QVariant, 4>;

    PDeviceProperty* record() const;
    Reading read() const;
    void look();
    void takeRecord(const QVariant& value);
    bool isOnlySwitchedOff(const QVariant& value) const;
    void beginToSettle();
    bool hasSettled() const;
    void hold(const Reading& found);
    void refreshRecord(const Reading& wanted);
    bool putBack(const Reading& wanted);

    QPointer<PDevice> m_device;
    QTimer m_timer;
    Reading m_last;
    std::optional<Reading> m_found; ///< the last one while exposure was automatic
    QVariant m_record;              ///< the composite value as it was last known
    QVariant m_shown;               ///< the same as a panel shows it
    int m_unchanged = 0;            ///< readings
    quint64 m_framesAtChange = 0;
    bool m_isSettling = false;
    bool m_isRefreshing = false;
};
