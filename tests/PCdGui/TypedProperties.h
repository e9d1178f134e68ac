// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/PReadWatch.h>
#include <PCd/property/typed/PDevicePropertyAction.h>
#include <PCd/property/typed/PDevicePropertyBool.h>
#include <PCd/property/typed/PDevicePropertyEnum.h>
#include <PCd/property/typed/PDevicePropertyInt.h>
#include <PCd/property/typed/PDevicePropertyScanArea.h>

#include <functional>

/// What a fake property returns from a set: what happened, or, as some cameras' adapters do, always
/// "taken", or the opposite of what happened.
enum class FakeAnswer { Truth, Taken, Opposite };

/// Base of the fake properties: a variable in place of the device, and a record of the values set.
template <typename T>
struct FakeSetting {
    explicit FakeSetting(T value)
        : inDevice(std::move(value)) {}

    bool take(const T& value) {
        sets.append(value);
        if (!refuses)
            inDevice = value;
        return answer == FakeAnswer::Taken || refuses == (answer == FakeAnswer::Opposite);
    }

    T read() const {
        ++reads;
        if (!failsToRead)
            return inDevice;
        PReadWatch::reportFailure();
        return T();
    }

    T inDevice;
    bool refuses = false;
    bool failsToRead = false; ///< the device does not answer when the value is read
    FakeAnswer answer = FakeAnswer::Truth;
    QList<T> sets;
    mutable int reads = 0;
};

class FakeSwitch : public PDevicePropertyBool, public FakeSetting<bool> {
public:
    explicit FakeSwitch(const QByteArray& id, const QString& title = u"Negative"_qs)
        : PDevicePropertyBool(id, title, PCD::DevicePropertyType::Switch)
        , FakeSetting(false) {}

    bool trySetValueToDevice(bool value) override { return take(value); }
    bool tryGetValueFromDevice() override { return read(); }
};

class FakeNumber : public PDevicePropertyInt, public FakeSetting<int> {
public:
    FakeNumber(const QByteArray& id, const QString& title, PMinMaxRange<int> range, int value)
        : PDevicePropertyInt(id, title, PCD::DevicePropertyType::Integer)
        , FakeSetting(value)
        , rangeInDevice(range) {}

    bool trySetValueToDevice(int value) override { return take(value); }
    int tryGetValueFromDevice() override { return read(); }
    PMinMaxRange<int> tryGetRangeFromDevice() override { return rangeInDevice; }

    PMinMaxRange<int> rangeInDevice;
};

class FakeChoice : public PDevicePropertyEnum, public FakeSetting<QUuid> {
public:
    FakeChoice(const QByteArray& id, const QString& title, const QStringList& titles)
        : PDevicePropertyEnum(id, title, PCD::DevicePropertyType::Choice)
        , FakeSetting(itemId(0)) {
        for (int i = 0; i < titles.size(); ++i)
            rangeInDevice.addItem(itemId(i), titles.at(i), titles.at(i), QByteArray::number(i));
    }

    /// The id of an item by its place, counted from 0; the first is the null id.
    static QUuid itemId(int place) { return QUuid(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, uchar(place)); }

    bool trySetValueToDevice(QUuid value) override { return take(value); }
    QUuid tryGetValueFromDevice() override { return read(); }
    PEnumeration tryGetRangeFromDevice() override { return rangeInDevice; }

    PEnumeration rangeInDevice;
};

class FakeAction : public PDevicePropertyAction {
public:
    FakeAction(const QByteArray& id, const QString& title)
        : PDevicePropertyAction(id, title, PCD::DevicePropertyType::Action) {}

    bool trySetValueToDevice() override {
        ++runs;
        return true;
    }

    int runs = 0;
};

/// A region; like some cameras' adapters it returns true if the device refused, and the other
/// way round.
class FakeRegion : public PDevicePropertyScanArea, public FakeSetting<QRect> {
public:
    explicit FakeRegion(const QByteArray& id, const QString& title = u"ROI"_qs)
        : PDevicePropertyScanArea(id, title, PCD::DevicePropertyType::ScanArea)
        , FakeSetting(QRect(0, 0, 1920, 1080))
        , rangeInDevice{QRect(0, 0, 1920, 1080), 4, 4, 4, 4, 0} {
        answer = FakeAnswer::Opposite;
    }

    bool trySetValueToDevice(QRect value) override { return take(value); }
    QRect tryGetValueFromDevice() override { return read(); }
    PScanAreaRange tryGetRangeFromDevice() override { return rangeInDevice; }

    PScanAreaRange rangeInDevice;
};

/// A property with a panel of its own.
class FakeComposite : public FakeSwitch {
public:
    FakeComposite(const QByteArray& id, std::function<QWidget*()> makePanel)
        : FakeSwitch(id, QString())
        , m_makePanel(std::move(makePanel)) {
        setType(PCD::DevicePropertyType::Custom);
    }

    QWidget* createWidget() override { return m_makePanel(); }

private:
    std::function<QWidget*()> m_makePanel;
};
