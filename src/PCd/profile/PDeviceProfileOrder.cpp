// SPDX-License-Identifier: MIT
#include <PCd/profile/PDeviceProfileOrder.h>

#include <PCd/property/PDeviceProperty.h>

#include <algorithm>

namespace {

int sendingRank(const PDeviceProperty* property) {
    switch (property->type()) {
    case PCD::DevicePropertyType::Switch:
    case PCD::DevicePropertyType::Choice:
        return 0;
    case PCD::DevicePropertyType::Custom:
        return 1;
    case PCD::DevicePropertyType::ScanArea:
        return 3;
    default:
        return 2;
    }
}

} // namespace

QList<PDeviceProperty*> PDeviceProfileOrder::sorted(QList<PDeviceProperty*> properties) {
    std::stable_sort(properties.begin(), properties.end(),
                     [](const PDeviceProperty* a, const PDeviceProperty* b) {
                         return sendingRank(a) < sendingRank(b);
                     });
    return properties;
}
