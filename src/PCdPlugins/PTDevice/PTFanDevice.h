// SPDX-License-Identifier: MIT
#pragma once

#include <PCdPlugins/PTDevice/FANDATA.h>

#include <PCd/property/typed/PDevicePropertyT.h>

#include <PCore/PExport.h>

#include <toupcam/toupcam.h>

/// The cooling fan: switch and speed, with a panel. The handle is borrowed. The device's thread.
class PCD_EXPORT PTFanProperty : public PDevicePropertyT<FANDATA> {
    Q_OBJECT

public:
    PTFanProperty(Toupcam_t* handle, const QByteArray& id, const QString& title);

    QWidget* createWidget() override;
    QVariant tryGetRange() override { return QVariant(); }
    /// Sends the speed, or 0 for a fan that is off. Always true: what the camera refuses is logged.
    bool trySetValueToDevice(FANDATA d) override;
    /// The camera's speed, on if it is 1 or more; {-1, 0} if it cannot be read.
    FANDATA tryGetValueFromDevice() override;
    /// {-1, 0} if the variant is not a FANDATA and cannot be converted to one.
    FANDATA convertToT(QVariant value) const override;
    QVariant convertFromT(FANDATA value) const override;
    /// Does nothing: the panel reads the highest speed from the camera.
    virtual void trySetRange(QVariant range);

private:
    friend class PTFanPanel; // uses the handle and the flag

    FANDATA value() const { return convertToT(valueInner()); }

    bool m_updating = false; ///< true while a panel shows a value: its signals are ignored
    Toupcam_t* m_h;
};
