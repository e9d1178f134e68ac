// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

class PDevice;

/// The existing devices, for callbacks that the SDK may make later than it should. Any thread.
namespace PTLiveDevices {

/// From now on withDevice() works on this device. Its constructor calls it.
void add(const PDevice* device);
/// When it returns, no call of withDevice() uses this device.
void remove(const PDevice* device);

/// Calls `use` with the device of a callback's context, which is not destroyed meanwhile; does
/// nothing if the device no longer exists.
void withDevice(const void* context, const std::function<void(const PDevice*)>& use);

} // namespace PTLiveDevices
