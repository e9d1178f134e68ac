// SPDX-License-Identifier: MIT
#pragma once

#include <apps/mutants/Mutant.h>

#include <PCd/property/PPropertyRoles.h>
#include <PCd/property/typed/PDevicePropertyTNoRangeQVariantBased.h>

#include <atomic>

/// How frames are triggered.
struct MutantTriggerValue {
    Q_GADGET
    Q_PROPERTY(int on MEMBER on)
    Q_PROPERTY(int time MEMBER time)
    Q_PROPERTY(int count MEMBER count)
    Q_PROPERTY(int source MEMBER source)

public:
    int on = 0;
    int time = 1; ///< milliseconds
    int count = 1;
    int source = 0;
};
Q_DECLARE_METATYPE(MutantTriggerValue)

/// Triggered capture of a MutantDevice.
class MutantTrigger : public PDevicePropertyTNoRangeQVariantBased<MutantTriggerValue> {
    Q_OBJECT

public:
    MutantTrigger(std::atomic<bool>& isOn, std::atomic<int>& shots)
        : PDevicePropertyTNoRangeQVariantBased("trigger", u"Trigger"_qs,
                                               PCD::DevicePropertyType::Custom)
        , m_isOn(isOn)
        , m_shots(shots) {
        PRoleBindings roles{{PRole::Triggered, PRoleUnit::Own, "on"},
                            {PRole::TriggerTime, PRoleUnit::Milliseconds, "time"},
                            {PRole::TriggerCount, PRoleUnit::Own, "count"},
                            {PRole::TriggerSource, PRoleUnit::Own, "source"},
                            {PRole::FireTrigger, PRoleUnit::Own, {}, "fire"}};
        if (breaks("trigger.roles"))
            roles.removeLast();
        PPropertyRoles::declare(*this, roles);
    }

    bool trySetValueToDevice(MutantTriggerValue value) override {
        m_value = value;
        m_isOn = value.on == 1;
        return true;
    }
    MutantTriggerValue tryGetValueFromDevice() override { return m_value; }

    Q_INVOKABLE bool fire(int frames) {
        m_shots = breaks("trigger.frames") ? frames - 1 : frames;
        return true;
    }

private:
    MutantTriggerValue m_value;
    std::atomic<bool>& m_isOn;
    std::atomic<int>& m_shots; ///< to be taken
};
