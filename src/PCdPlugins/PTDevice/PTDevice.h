// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/device/PDevice.h>

#include <PCore/PExport.h>

#include <toupcam/toupcam.h>

#include <QMutex>

#include <atomic>
#include <memory>

class PTStreamThread;

/// One camera, open as long as the object exists. Everything runs on the device's thread, and calls
/// the camera directly through the SDK handle, unless its comment says otherwise.
class PCD_EXPORT PTDevice : public PDevice {
    Q_OBJECT

public:
    /// Opens the camera of an enumeration record. Null if the SDK does not open it; closes the
    /// camera again and throws std::invalid_argument if the record has no model name.
    static PTDevice* create(ToupcamDeviceV2 record);
    /// Closes the camera, after callbacks in progress have returned.
    ~PTDevice() override;

    bool isSupportStillCapture() const override;
    /// Requests a still and returns an empty image: the still arrives through the stream.
    PImage getSnapshot() override;
    /// Requests a still at the current resolution. True if the SDK accepted.
    bool triggerStillCapture() override;
    QByteArray getModel() const override;
    /// Exactly 10 bytes, padded with zeros, or empty if it could not be read.
    QByteArray getSerial() const override;
    bool tryLink() override;
    bool tryUnlink() override;
    /// Starts the SDK's push mode with cbData. True if the SDK accepted.
    bool tryStartStream() override;
    bool tryStopStream() override;
    /// The mode of the resolution in use, or an empty mode if it is not among the modes.
    PDeviceMode getCurrentMode() override;
    /// Selects the resolution with the mode's id. True if the SDK accepted.
    bool trySetMode(const PDeviceMode& mode) override;
    /// The SDK's resolutions in their order: the id is the index, the name "widthxheight".
    QList<PDeviceMode> getSupportModes() override;
    /// New objects at each call, owned by the caller, bound to the camera.
    QList<PDeviceProperty*> getSupportProperties() override;
    /// New groups of the properties that the device owns; a group may be empty.
    QList<PDevicePropertyGroup*> getSupportPropertyGroups() override;

    /// The model's flag word (TOUPCAM_FLAG_…). Any thread.
    quint64 flags() const { return modelFlags; }
    /// The SDK's id of the camera, at most 63 characters. Any thread.
    const char* sdkCameraId() const { return cameraId; }

    /// The SDK reported that the camera is gone: logs it and emits disconnected(), once. Any
    /// thread, any number of times.
    void handleSdkDisconnect();

    /// Passes an image, or an event code, to the stream thread. Any thread.
    void postprocImage(const PImage& image);
    void postprocEvt(unsigned int code);

    /// The pull-mode worker, for a host that runs the camera in pull mode. Never null.
    PTStreamThread* pullThread() const { return streamThread.get(); }
    /// The SDK handle, for such a host, which must not close it.
    HToupCam sdkHandle() const { return m_handle; }

signals:
    /// The camera is gone; the argument is deviceId(false). On the device's thread, once.
    void disconnected(QByteArray id);

protected:
    /// Opens the camera; if the SDK refuses, the handle is null, which create() checks.
    explicit PTDevice(ToupcamDeviceV2 record);

    /// A mutex whose holder the destructor waits for after closing the camera. Any thread.
    QMutex& deviceMutex() { return mutex; }

private:
    struct Data {
        QByteArray model;
        QByteArray serial;
    };

    QList<PDeviceProperty*> exposureProperties();
    QList<PDeviceProperty*> whiteBalanceProperties();
    QList<PDeviceProperty*> pictureProperties();
    PDeviceProperty* roiProperty();

    void readSerial();
    void applyFixedSettings();
    void applyHighestSpeed();

    // Members are destroyed in reverse order: the stream thread last.
    HToupCam m_handle = nullptr;
    std::atomic<bool> disconnectReported{false};
    std::unique_ptr<PTStreamThread> streamThread;
    Data data;
    QMutex mutex; // held by any thread, it keeps the device from being destroyed
    quint64 modelFlags;
    char cameraId[64] = {};
};

/// The SDK's callbacks; the context is the PTDevice. They run on threads of the SDK and let no
/// exception out.

/// Push mode: one frame, or one still; null data means that the camera is gone.
PCD_EXPORT void cbData(const void* data, const BITMAPINFOHEADER* header, int isSnapshot, void* ctx);
/// Pull mode: one event (TOUPCAM_EVENT_…), passed on to the stream thread.
PCD_EXPORT void cbEvent(unsigned int code, void* ctx);
/// The camera changed exposure time or gain automatically: the two properties are read again.
PCD_EXPORT void cbExposure(void* ctx);
