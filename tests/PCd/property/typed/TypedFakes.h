// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/typed/PDevicePropertyAction.h>
#include <PCd/property/typed/PDevicePropertyBool.h>
#include <PCd/property/typed/PDevicePropertyEnum.h>
#include <PCd/property/typed/PDevicePropertyInt.h>
#include <PCd/property/typed/PDevicePropertyScanArea.h>

#include <QStringList>

/// A typed property with a variable in place of a device. It records the calls of its device slots.
template <typename Base, typename T>
class TypedFake : public Base {
public:
    explicit TypedFake(PCD::DevicePropertyType type, T value = {})
        : Base(QByteArray("fake"), u"Fake"_qs, type)
        , inDevice(value) {}

    bool trySetValueToDevice(T value) override {
        calls.append(u"set"_qs);
        sent.append(value);
        if (answer)
            inDevice = value;
        return answer;
    }
    T tryGetValueFromDevice() override {
        calls.append(u"get"_qs);
        return inDevice;
    }

    T inDevice;
    QList<T> sent;
    QStringList calls;
    bool answer = true;
};

template <typename Base, typename T, typename R>
class RangedFake : public TypedFake<Base, T> {
public:
    RangedFake(PCD::DevicePropertyType type, T value, R range)
        : TypedFake<Base, T>(type, value)
        , rangeInDevice(range) {}

    R tryGetRangeFromDevice() override {
        this->calls.append(u"range"_qs);
        return rangeInDevice;
    }

    R rangeInDevice;
};

class FakeSwitch : public TypedFake<PDevicePropertyBool, bool> {
public:
    explicit FakeSwitch(bool value = false)
        : TypedFake(PCD::DevicePropertyType::Switch, value) {}
};

class FakeNumber : public RangedFake<PDevicePropertyInt, int, PMinMaxRange<int>> {
public:
    explicit FakeNumber(int value = 5, PMinMaxRange<int> range = {0, 10, 1})
        : RangedFake(PCD::DevicePropertyType::Integer, value, range) {}
};

/// Items "Off" (0) and "On" (7), whose ids end in 0 and 1.
PEnumeration offAndOn();

class FakeChoice : public RangedFake<PDevicePropertyEnum, QUuid, PEnumeration> {
public:
    explicit FakeChoice(QUuid value = {}, const PEnumeration& range = offAndOn())
        : RangedFake(PCD::DevicePropertyType::Choice, value, range) {}
};

class FakeRegion : public RangedFake<PDevicePropertyScanArea, QRect, PScanAreaRange> {
public:
    explicit FakeRegion(QRect value = QRect(0, 0, 640, 480))
        : RangedFake(PCD::DevicePropertyType::ScanArea, value,
                     PScanAreaRange{QRect(0, 0, 640, 480), 4, 4, 4, 4, 0}) {}
};

class FakeAction : public PDevicePropertyAction {
public:
    FakeAction()
        : PDevicePropertyAction("fake", u"Fake"_qs, PCD::DevicePropertyType::Action) {}

    bool trySetValueToDevice() override {
        ++runs;
        return answer;
    }

    int runs = 0;
    bool answer = true;
};

inline PEnumeration offAndOn() {
    PEnumeration items;
    items.addItem(QUuid(), u"Off"_qs, u"Aus"_qs, "0");
    items.addItem(QUuid(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1), u"On"_qs, u"Ein"_qs, "7");
    return items;
}
