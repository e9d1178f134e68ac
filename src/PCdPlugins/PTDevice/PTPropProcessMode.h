// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/typed/PDevicePropertyEnum.h>

#include <PCore/PExport.h>

#include <toupcam/toupcam.h>

#include <QList>

class PTDevice;

/// A choice that the SDK holds as an integer option; each item's data is the option's value as
/// decimal text. The handle is borrowed. The device's thread.
class PCD_EXPORT PTPropProcessMode : public PDevicePropertyEnum {
    Q_OBJECT

public:
    PTPropProcessMode(Toupcam_t* handle, const QByteArray& id, const QString& title, int option,
                      const PEnumeration& items);

    /// Sends the value of the item in the cached range; 0 for an unknown item. Always true,
    /// whatever the SDK returns.
    bool trySetValueToDevice(QUuid item) override;
    /// The item with the camera's value, or the first item if there is none.
    QUuid tryGetValueFromDevice() override;
    PEnumeration tryGetRangeFromDevice() override { return m_items; }

private:
    Toupcam_t* m_handle;
    PEnumeration m_items;
    int m_option;
};

/// The same with the SDK's calls for the light frequency; the option number is stored but not used.
/// The handle is borrowed. The device's thread.
class PCD_EXPORT PTPropBackligtComp : public PDevicePropertyEnum {
    Q_OBJECT

public:
    PTPropBackligtComp(Toupcam_t* handle, const QByteArray& id, const QString& title, int option,
                       const PEnumeration& items);

    /// The same, but true exactly if the SDK's result is not negative.
    bool trySetValueToDevice(QUuid item) override;
    QUuid tryGetValueFromDevice() override;
    PEnumeration tryGetRangeFromDevice() override { return m_items; }

private:
    Toupcam_t* m_handle;
    PEnumeration m_items;
    [[maybe_unused]] int m_option;
};

/// New properties "colormatrix", "wbgain", "binning" and "rotate", in this order; the caller owns
/// them. The device's thread.
PCD_EXPORT QList<PDeviceProperty*> createProcessModeProperties(PTDevice* device, Toupcam_t* handle);
