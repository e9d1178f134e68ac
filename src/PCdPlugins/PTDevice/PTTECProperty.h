// SPDX-License-Identifier: MIT
#pragma once

#include <PCdPlugins/PTDevice/TECDATA.h>

#include <PCd/property/typed/PDevicePropertyT.h>

#include <PCore/PExport.h>

#include <toupcam/toupcam.h>

/// The sensor's thermo-electric cooler: switch and target temperature, with a panel that also shows
/// the present temperature and voltage. The handle is borrowed. The device's thread.
class PCD_EXPORT PTECProperty : public PDevicePropertyT<TECDATA> {
    Q_OBJECT

public:
    PTECProperty(Toupcam_t* handle, const QByteArray& id, const QString& title);

    /// Sends the stored settings to the camera; see PTTECPanel.
    QWidget* createWidget() override;
    QVariant tryGetRange() override { return QVariant(); }
    /// Sends both. True if the camera took the temperature.
    bool trySetValueToDevice(TECDATA d) override;
    /// The stored value, with the switch read from the camera; the target is never read back.
    TECDATA tryGetValueFromDevice() override;
    /// {0, 150} if the variant is not a TECDATA and cannot be converted to one.
    TECDATA convertToT(QVariant value) const override;
    QVariant convertFromT(TECDATA value) const override;
    /// Does nothing: there is no range.
    virtual void trySetRange(QVariant range);

    /// The sensor's present temperature, a number of degrees Celsius; invalid if it cannot be read.
    /// Programs find it by name, without including this class.
    Q_INVOKABLE QVariant sensorTemperature() const;

private:
    friend class PTTECPanel; // uses the handle and the value

    TECDATA value() const { return convertToT(valueInner()); }

    Toupcam_t* m_h;
};
