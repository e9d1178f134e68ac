// SPDX-License-Identifier: MIT
#pragma once

#include <PCdPlugins/PTDevice/ExtendedExposureData.h>

#include <PCd/property/typed/PDevicePropertyT.h>

#include <toupcam/toupcam.h>

/// Everything about how a frame is exposed, as one value with a panel of its own. The handle is
/// borrowed. The device's thread.
class PTExtendedExposure : public PDevicePropertyT<ExtendedExposureData> {
    Q_OBJECT

public:
    /// Reads the camera's time and gain ranges; one that cannot be read stays 0 to 0.
    PTExtendedExposure(HToupCam h, const QByteArray& id, const QString& title);

    QWidget* createWidget() override;
    QVariant tryGetRange() override { return QVariant(); }
    /// Sends video or trigger settings, as `capturemode` says, and stores the record. Always true:
    /// what the camera refuses is logged.
    bool trySetValueToDevice(ExtendedExposureData d) override;
    /// The stored record with time, gain, target and automatic exposure as the camera has them.
    ExtendedExposureData tryGetValueFromDevice() override;
    /// A variant that holds and makes no record gives the default record.
    ExtendedExposureData convertToT(QVariant value) const override;
    QVariant convertFromT(ExtendedExposureData value) const override;
    /// Does nothing: there is no range.
    virtual void trySetRange(QVariant range);

    /// Fires this many frames by software, at most 65534; 65535 without an end, 0 ends a run. For
    /// programs, which find it by name. False if the camera refuses.
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
