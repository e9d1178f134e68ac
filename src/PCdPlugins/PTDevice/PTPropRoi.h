// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/typed/PDevicePropertyScanArea.h>

#include <PCore/PExport.h>

#include <toupcam/toupcam.h>

/// The region of interest, in sensor pixels of the resolution in use. The handle is borrowed. The
/// device's thread.
class PCD_EXPORT PTPropRoi : public PDevicePropertyScanArea {
    Q_OBJECT

public:
    PTPropRoi(Toupcam_t* handle, const QByteArray& id, const QString& title);

    /// Sends the region. True exactly if the SDK's result is not 0: the reverse of every other
    /// property, so that the host reads back which region the camera has applied.
    bool trySetValueToDevice(QRect region) override;
    QRect tryGetValueFromDevice() override;
    /// The whole sensor at the resolution in use, in steps of 4 pixels; empty if the camera has no
    /// resolution in use.
    PScanAreaRange tryGetRangeFromDevice() override;

    /// Reads range and region after a change of the mode. If the camera does not report them, the
    /// region of the mode before is unread, so that it is not shown as the present one.
    void followMode();

private:
    Toupcam_t* m_handle;
};
