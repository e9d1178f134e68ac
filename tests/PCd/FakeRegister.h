// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/device/PDevice.h>
#include <PCd/device/PDeviceRegister.h>

#include <functional>

/// A register of given devices.
class FakeRegister : public PDeviceRegister {
public:
    explicit FakeRegister(const QList<PDevice*>& present = {})
        : alive(present) {
        setId("fakes");
    }

    QList<PDevice*> aliveDevices() override {
        ++searches;
        if (whenAsked)
            whenAsked();
        return alive;
    }

    QList<PDevice*> alive;
    std::function<void()> whenAsked;
    int searches = 0;
};
