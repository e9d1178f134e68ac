// SPDX-License-Identifier: MIT
#include <PCdPlugins/PTDevice/PTLiveDevices.h>

#include <algorithm>
#include <mutex>
#include <vector>

namespace {

struct Live {
    std::mutex mutex; // also held while a device is used, so that it is not destroyed
    std::vector<const PDevice*> devices;
};

Live& live() {
    // Never destroyed: a callback may come while the process ends.
    static Live* const all = new Live;
    return *all;
}

} // namespace

void PTLiveDevices::add(const PDevice* device) {
    const std::lock_guard lock(live().mutex);
    live().devices.push_back(device);
}

void PTLiveDevices::remove(const PDevice* device) {
    const std::lock_guard lock(live().mutex);
    auto& devices = live().devices;
    devices.erase(std::remove(devices.begin(), devices.end(), device), devices.end());
}

void PTLiveDevices::withDevice(const void* context,
                               const std::function<void(const PDevice*)>& use) {
    const std::lock_guard lock(live().mutex);
    for (const PDevice* device : live().devices) {
        if (static_cast<const void*>(device) == context)
            return use(device);
    }
}
