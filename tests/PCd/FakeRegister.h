// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/device/PDevice.h>
#include <PCd/device/PDeviceRegister.h>

#include <functional>

/// A register whose devices are those it is given.
class FakeRegister : public PDeviceRegister {
public:
    explicit FakeRegister(const QList<PDevice*>& present = {})
        : alive(present) {
        setId("fakes");
    }

    QList<PDevice*> aliveDevices() override {
        ++asked;
        if (whenAsked)
            whenAsked();
        return alive;
    }

    QList<PDevice*> alive;
    std::function<void()> whenAsked;
    int asked = 0;
};
