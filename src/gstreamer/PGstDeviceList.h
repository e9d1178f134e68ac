// SPDX-License-Identifier: MIT
#pragma once

#include <gst/gst.h>

#include <memory>

class PDevice;
class PGstDeviceWatch;

/// The cameras of the process in GStreamer's list of devices. Any thread; what waits for Qt's
/// thread has a timeout. Devices are listed by the SDK that PGstHost::prepare() uses by default.
class PGstDeviceList {
public:
    explicit PGstDeviceList(GstDeviceProvider* provider);
    /// Stops.
    ~PGstDeviceList();

    /// The cameras that are present now; the caller owns list and devices.
    GList* probe() const;
    /// Adds the cameras to the list, and follows them from now on. False, with a warning in the
    /// log, if SDK or plugins cannot be loaded.
    bool start();
    /// Ends that.
    void stop();

    /// GStreamer's device for a camera, a floating reference. The device's thread.
    static GstDevice* makeDevice(PDevice& device);

private:
    GstDeviceProvider* const m_provider;
    std::shared_ptr<PGstDeviceWatch> m_watch; ///< used on Qt's thread only; null while stopped
};
