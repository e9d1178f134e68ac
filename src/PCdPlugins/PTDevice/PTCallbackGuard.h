// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PFaultStack.h>

#include <exception>

class PDevice;

/// Functions that the SDK's callbacks share. Callbacks run on threads of the SDK, inside its C
/// code: an exception that escaped would end the process.
namespace PTCallbackGuard {

/// Logs an exception thrown in a callback. Any thread; throws nothing.
void logException(const char* callback, const char* what) noexcept;

/// Runs a callback's body and lets no exception out. True if nothing was thrown. The SDK's thread
/// has a PFaultStack from then on.
template <typename Body>
bool run(const char* callback, const Body& body) noexcept {
    PFaultStack::giveThread();
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

/// Makes a property be read again on the device's thread; does nothing if the device has none of
/// that id. Any thread.
void updateLater(const PDevice* device, const char* propertyId);

} // namespace PTCallbackGuard
