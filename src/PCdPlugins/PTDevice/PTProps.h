// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/typed/PDevicePropertyAction.h>
#include <PCd/property/typed/PDevicePropertyBool.h>
#include <PCd/property/typed/PDevicePropertyInt.h>

#include <PCore/PExport.h>

#include <toupcam/toupcam.h>

/// Binds a number to one SDK getter and setter. `Get` and `Put` are their function types, T is the
/// SDK's width of the value, Base a PDevicePropertyInt. The handle is borrowed. The device's
/// thread.
template <typename Get, typename Put, typename T, typename Base>
class PCD_EXPORT PTProp : public Base {
public:
    PTProp(Toupcam_t* handle, Get* getter, Put* setter, PMinMaxRange<T> range, const QByteArray& id,
           const QString& title)
        : Base(id, title, PCD::DevicePropertyType::Integer)
        , m_handle(handle)
        , m_getter(getter)
        , m_setter(setter)
        , m_minimum(range.minimum)
        , m_maximum(range.maximum)
        , m_step(range.step) {}

    /// Truncates the number to the SDK's width, without checking the range, and sends it. True
    /// exactly if the SDK returns 0.
    bool trySetValueToDevice(int value) override {
        return m_setter(m_handle, static_cast<T>(value)) == 0;
    }
    /// The camera's number; 0 if it cannot be read.
    int tryGetValueFromDevice() override {
        T value = 0;
        m_getter(m_handle, &value);
        return int(value);
    }
    PMinMaxRange<int> tryGetRangeFromDevice() override {
        return {int(m_minimum), int(m_maximum), int(m_step)};
    }

private:
    Toupcam_t* m_handle;
    Get* m_getter;
    Put* m_setter;
    T m_minimum;
    T m_maximum;
    T m_step;
};

template <typename T>
using PTNumber = PTProp<int(Toupcam_t*, T*), int(Toupcam_t*, T), T, PDevicePropertyInt>;

/// Binds a switch to one SDK getter and setter. The handle is borrowed. The device's thread.
template <typename Get, typename Put, typename Base>
class PCD_EXPORT PTPropBool : public Base {
public:
    PTPropBool(Toupcam_t* handle, Get* getter, Put* setter, const QByteArray& id,
               const QString& title)
        : Base(id, title, PCD::DevicePropertyType::Switch)
        , m_handle(handle)
        , m_getter(getter)
        , m_setter(setter) {}

    /// Always true, whatever the SDK returns.
    bool trySetValueToDevice(bool value) override {
        m_setter(m_handle, value ? 1 : 0);
        return true;
    }
    bool tryGetValueFromDevice() override {
        int value = 0;
        m_getter(m_handle, &value);
        return value != 0;
    }

private:
    Toupcam_t* m_handle;
    Get* m_getter;
    Put* m_setter;
};

using PTSwitch = PTPropBool<int(Toupcam_t*, int*), int(Toupcam_t*, int), PDevicePropertyBool>;

/// Colour temperature or tint, which the SDK sets and reads together. The handle is borrowed. The
/// device's thread.
class PCD_EXPORT PTTempTint : public PDevicePropertyInt {
    Q_OBJECT

public:
    /// Selects one value of the pair.
    enum Selector { Temperature = 0, Tint = 1 };

    PTTempTint(Toupcam_t* handle, int selector, PMinMaxRange<int> range, const QByteArray& id,
               const QString& title);

    /// Sends the pair, with the other value as the camera has it. Always true; with an unknown
    /// selector nothing is sent.
    bool trySetValueToDevice(int value) override;
    /// The selected value; 0 with an unknown selector.
    int tryGetValueFromDevice() override;
    PMinMaxRange<int> tryGetRangeFromDevice() override;

private:
    Toupcam_t* m_handle;
    int m_selector;
    int m_minimum;
    int m_maximum;
    int m_step;
};

/// Makes the camera set its white balance automatically, once; afterwards "tint" and "temp" are
/// read again. The handle is borrowed. The device's thread.
class PCD_EXPORT PTAWBOnce : public PDevicePropertyAction {
    Q_OBJECT

public:
    PTAWBOnce(Toupcam_t* handle, const QByteArray& id, const QString& title);

    /// Always true, whatever the SDK returns.
    bool trySetValueToDevice() override;

private:
    Toupcam_t* m_handle;
};

/// The SDK has set the white balance; the context is the PDevice, which is a PTDevice. On a thread
/// of the SDK; its arguments are not used, as the properties read the camera. Ignores the context
/// of a device that no longer exists.
PCD_EXPORT void cbWbOnce(const int temp, const int tint, void* context);
