// SPDX-License-Identifier: MIT
#pragma once

#include <PCdPlugins/PTDevice/ExtendedExposureData.h>

#include <PCd/property/typed/PDevicePropertyT.h>

#include <PCore/PExport.h>

#include <toupcam/toupcam.h>

/// All exposure and trigger settings as one value with its own panel. The handle is borrowed. The
/// device's thread.
class PCD_EXPORT PTExtendedExposure : public PDevicePropertyT<ExtendedExposureData> {
    Q_OBJECT

public:
    /// Reads the camera's ranges of time and gain; one that cannot be read stays 0 to 0.
    PTExtendedExposure(HToupCam h, const QByteArray& id, const QString& title);

    QWidget* createWidget() override;
    QVariant tryGetRange() override { return QVariant(); }
    /// Sends the settings for video or trigger, depending on `capturemode`, and stores the record.
    /// Always true: refused settings are logged.
    bool trySetValueToDevice(ExtendedExposureData d) override;
    /// The stored record with time, gain, target and automatic exposure as the camera has them.
    ExtendedExposureData tryGetValueFromDevice() override;
    /// The default record if the variant is not one and cannot be converted to one.
    ExtendedExposureData convertToT(QVariant value) const override;
    QVariant convertFromT(ExtendedExposureData value) const override;
    /// Does nothing: there is no range.
    virtual void trySetRange(QVariant range);

    /// Triggers this number of frames by software, at most 65534; 65535 starts a run without end, 0
    /// ends a run. Programs find it by name. False if the camera refuses.
    Q_INVOKABLE bool fireTrigger(int frames);

    /// The stored record.
    ExtendedExposureData value() const { return convertToT(valueInner()); }

private:
    friend class PTExtendedExposureWidget; // reads the handle and the ranges

    void sendVideoSettings(const ExtendedExposureData& d);
    void sendTriggerSettings(const ExtendedExposureData& d);

    HToupCam m_h;
    unsigned uMinTime = 0; ///< microseconds, as all times here
    unsigned uMaxTime = 0;
    unsigned ndef = 0; ///< the camera's default; not used
    unsigned short uGainMin = 0;
    unsigned short uGainMax = 0;
    unsigned short uGainDef = 0; ///< not used
};
