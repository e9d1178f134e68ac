// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/typed/PDevicePropertyInt.h>

#include <PCore/PExport.h>

#include <toupcam/toupcam.h>

/// Compensation of light that flickers with the mains: the SDK's code for its frequency (0: 60 Hz,
/// 1: 50 Hz, 2: direct current), with a panel. The handle is borrowed. The device's thread.
class PCD_EXPORT PTBacklightProperty : public PDevicePropertyInt {
    Q_OBJECT

public:
    PTBacklightProperty(Toupcam_t* handle, const QByteArray& id, const QString& title);

    QWidget* createWidget() override;
    /// Sends any value, without a check. True if the SDK's result is not negative.
    bool trySetValueToDevice(int value) override;
    /// 0 also if it cannot be read.
    int tryGetValueFromDevice() override;
    /// All zero: no range is offered.
    PMinMaxRange<int> tryGetRangeFromDevice() override;

private:
    Toupcam_t* m_handle;
};
