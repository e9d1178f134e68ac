// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>

class PDevice;

/// Reads exposure time and gain from a camera again and again, a few times a second, so that frames
/// carry what automatic exposure has chosen: the camera does not tell it by itself. From its
/// construction to its end, or the device's. The device's thread.
class PExposureWatch : public QObject {
    Q_OBJECT

public:
    explicit PExposureWatch(PDevice* device);

private:
    void read();

    QPointer<PDevice> m_device;
    QTimer m_timer;
};
