// SPDX-License-Identifier: MIT
#pragma once

#include "PatternCamera.h"

#include <PCd/device/PDevice.h>

/// The framework's device for a PatternCamera. It keeps no setting itself: the camera has them.
class PatternDevice : public PDevice {
    Q_OBJECT

public:
    explicit PatternDevice(QObject* parent)
        : PDevice(parent) {
        deviceId(false); // claims the id
        setDeviceOption(PCD::DeviceOption::HotPluggable, true);
        setDeviceOption(PCD::DeviceOption::AsynchronousStill, true);
    }

    QByteArray getModel() const override { return "Pattern"; }
    QByteArray getSerial() const override { return "P1"; }
    bool isRealDevice() const override { return false; }
    bool isSupportStillCapture() const override { return true; }
    PImage getSnapshot() override {
        triggerStillCapture();
        return PImage(); // the still arrives later
    }
    bool triggerStillCapture() override { return takePicture(true); }
    bool tryLink() override { return true; }
    bool tryUnlink() override { return true; }
    bool tryStartStream() override {
        return m_camera.startLive([this] { takePicture(false); });
    }
    bool tryStopStream() override { return m_camera.stopLive(); }
    PDeviceMode getCurrentMode() override;
    bool trySetMode(const PDeviceMode& mode) override;
    QList<PDeviceMode> getSupportModes() override;
    QList<PDeviceProperty*> getSupportProperties() override;
    QList<PDevicePropertyGroup*> getSupportPropertyGroups() override;

private:
    bool takePicture(bool isStill);

    PatternCamera m_camera;
};
