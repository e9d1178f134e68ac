// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QObject>

#include <gst/gst.h>

class PDevice;

/// Keeps GStreamer's list of devices equal to the devices of the process. Qt's thread (PQtLoop).
class PGstDeviceWatch : public QObject {
    Q_OBJECT

public:
    explicit PGstDeviceWatch(GstDeviceProvider* provider);
    /// Stops.
    ~PGstDeviceWatch() override;

    /// Adds the devices that are present, and follows them. False if they cannot be loaded.
    bool start();
    /// Follows them no longer; the list stays as it is.
    void stop();

private:
    void add(PDevice* device);
    void remove(PDevice* device);

    GstDeviceProvider* const m_provider;
    QHash<PDevice*, GstDevice*> m_devices; ///< with a reference to each
};
