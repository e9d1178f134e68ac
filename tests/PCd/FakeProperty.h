// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PReadWatch.h>

#include <QStringList>

/// A property with a variable in place of a device. It records the calls it receives.
class FakeProperty : public PDeviceProperty {
public:
    explicit FakeProperty(const QByteArray& id, const QVariant& value = 5)
        : PDeviceProperty(id, u"Title of "_qs + QString::fromLatin1(id),
                          PCD::DevicePropertyType::Integer)
        , inDevice(value) {}

    bool trySetValue(QVariant value) override {
        calls.append(u"set"_qs);
        if (!refuses)
            inDevice = becomes.isValid() ? becomes : value;
        return answersOpposite ? refuses : !refuses || answersTaken;
    }
    QVariant tryGetValue() override {
        calls.append(u"get value"_qs);
        if (!failsToRead)
            return inDevice;
        PReadWatch::reportFailure();
        return returnsNone ? QVariant() : QVariant(inDevice.metaType()); // zero, as adapters return
    }
    QVariant tryGetRange() override {
        calls.append(u"get range"_qs);
        if (!failsToReadRange)
            return rangeInDevice;
        PReadWatch::reportFailure();
        return QVariant(rangeInDevice.metaType());
    }

    using PDeviceProperty::setValueInner;

    QVariant inDevice;
    QVariant rangeInDevice;
    QVariant becomes; ///< the value that the device stores whatever it is sent, if valid
    bool refuses = false;
    bool failsToRead = false; ///< the device does not answer when the value is read
    bool failsToReadRange = false;
    bool returnsNone = false;     ///< then not even zero
    bool answersTaken = false;    ///< returns true in any case, as some devices do
    bool answersOpposite = false; ///< returns false for what it took, as some devices do
    QStringList calls;
};
