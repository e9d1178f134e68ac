// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>

class PDevice;

/// Reads the plain settings of a camera's exposure again and again, a few times a second, so that
/// frames carry what automatic exposure has chosen, or a panel has sent: the camera does not tell
/// it by itself. From its construction to its end, or the device's. The device's thread.
class PExposureWatch : public QObject {
    Q_OBJECT

public:
    explicit PExposureWatch(PDevice* device);

private:
    void read();

    QPointer<PDevice> m_device;
    QTimer m_timer;
};
