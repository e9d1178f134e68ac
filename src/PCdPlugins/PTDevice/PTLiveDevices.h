// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

class PDevice;

/// The devices that exist, for callbacks that the SDK may make after it should have stopped. Any
/// thread.
namespace PTLiveDevices {

/// From now on withDevice() works on this device. Its constructor calls it.
void add(const PDevice* device);
/// When it returns, no call of withDevice() works on this device any more.
void remove(const PDevice* device);

/// Calls `use` with the device behind a callback's context, which cannot go meanwhile; does nothing
/// if there is no such device (any more).
void withDevice(const void* context, const std::function<void(const PDevice*)>& use);

} // namespace PTLiveDevices
