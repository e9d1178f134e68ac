// SPDX-License-Identifier: MIT
#pragma once

#include "PatternCamera.h"

#include <PCd/property/PPropertyRoles.h>
#include <PCd/property/typed/PDevicePropertyBool.h>
#include <PCd/property/typed/PDevicePropertyEnum.h>
#include <PCd/property/typed/PDevicePropertyInt.h>

/// Has no value of its own: each function is one call to the camera, which the device owns.
template <typename Base, PCD::DevicePropertyType type>
class PatternProperty : public Base {
public:
    PatternProperty(const QByteArray& id, const QString& title, PatternCamera& camera,
                    PatternCamera::Setting setting)
        : Base(id, title, type)
        , m_camera(camera)
        , m_setting(setting) {}

protected:
    PatternCamera& m_camera;
    const PatternCamera::Setting m_setting;
};

class PatternNumber : public PatternProperty<PDevicePropertyInt, PCD::DevicePropertyType::Integer> {
public:
    using PatternProperty::PatternProperty;

    bool trySetValueToDevice(int value) override { return m_camera.setValue(m_setting, value); }
    int tryGetValueFromDevice() override { return m_camera.value(m_setting); }
    PMinMaxRange<int> tryGetRangeFromDevice() override {
        return {PatternCamera::minima[m_setting], PatternCamera::maxima[m_setting], 1};
    }
};

class PatternSwitch : public PatternProperty<PDevicePropertyBool, PCD::DevicePropertyType::Switch> {
public:
    using PatternProperty::PatternProperty;

    bool trySetValueToDevice(bool on) override { return m_camera.setValue(m_setting, on ? 1 : 0); }
    bool tryGetValueFromDevice() override { return m_camera.value(m_setting) != 0; }
};

/// The value is the id of an item; scripts and files have the item's name.
class PatternChoice : public PatternProperty<PDevicePropertyEnum, PCD::DevicePropertyType::Choice> {
public:
    using PatternProperty::PatternProperty;

    bool trySetValueToDevice(QUuid id) override {
        bool isItem = false;
        const int value = tryGetRangeFromDevice().getItem(id).data.toInt(&isItem);
        return isItem && m_camera.setValue(m_setting, value);
    }
    QUuid tryGetValueFromDevice() override { return itemId(m_camera.value(m_setting)); }
    PEnumeration tryGetRangeFromDevice() override {
        PEnumeration items; // ids, names, titles for the user, and what the camera takes
        items.addItem(itemId(0), "bars", tr("Colour bars"), "0");
        items.addItem(itemId(1), "tiles", tr("Tiles"), "1");
        return items;
    }

private:
    /// Never the null id, which is no item's.
    static QUuid itemId(int value) { return {uint(value + 1), 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}; }
};
