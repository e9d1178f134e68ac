// SPDX-License-Identifier: MIT
#pragma once

#include <exception>

class PDevice;

/// What the SDK's callbacks share. They run on threads of the SDK, inside its C code: an exception
/// that got out would end the process.
namespace PTCallbackGuard {

/// Logs what a callback has thrown. Any thread; throws nothing.
void logException(const char* callback, const char* what) noexcept;

/// Runs a callback's body and keeps what it throws from the SDK. True if nothing was thrown.
template <typename Body>
bool run(const char* callback, const Body& body) noexcept {
    try {
        body();
        return true;
    } catch (const std::exception& error) {
        logException(callback, error.what());
    } catch (...) {
        logException(callback, "of an unknown type");
    }
    return false;
}

/// Has a property of the device read again on the device's thread; nothing if there is none. Any
/// thread.
void updateLater(const PDevice* device, const char* propertyId);

} // namespace PTCallbackGuard
