// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/PDeviceProperty.h>

#include <QStringList>

/// A property whose device is a variable. It records the calls it receives.
class FakeProperty : public PDeviceProperty {
public:
    explicit FakeProperty(const QByteArray& id, const QVariant& value = 5)
        : PDeviceProperty(id, QStringLiteral("Title of ") + QString::fromLatin1(id),
                          PCD::DevicePropertyType::Integer)
        , inDevice(value) {}

    bool trySetValue(QVariant value) override {
        calls.append(QStringLiteral("set"));
        if (!refuses)
            inDevice = becomes.isValid() ? becomes : value;
        return answersOpposite ? refuses : !refuses || answersTaken;
    }
    QVariant tryGetValue() override {
        calls.append(QStringLiteral("get value"));
        return inDevice;
    }
    QVariant tryGetRange() override {
        calls.append(QStringLiteral("get range"));
        return rangeInDevice;
    }

    using PDeviceProperty::setValueInner;

    QVariant inDevice;
    QVariant rangeInDevice;
    QVariant becomes; ///< what the device makes of any value it takes, if valid
    bool refuses = false;
    bool answersTaken = false;    ///< always true, as some devices do
    bool answersOpposite = false; ///< false for what it took, as some devices do
    QStringList calls;
};
