// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <QtGlobal>

/// Notices failed readings. The functions with which a plugin reads a device must return something
/// even if the device does not answer, zeros for example. A plugin that then calls reportFailure()
/// lets the host know that what was returned is no value: PDeviceProperty marks it as unread, and
/// programs neither show, save nor compare it. Readings run on one thread, and only
/// objects of the same thread notice them.
class PCD_EXPORT PReadWatch {
public:
    PReadWatch() noexcept;
    PReadWatch(const PReadWatch&) = delete;
    PReadWatch& operator=(const PReadWatch&) = delete;

    /// True if a reading has failed on this thread since the object was made.
    bool hasFailed() const noexcept;

    /// For plugins, while PDeviceProperty::tryGetValue() or tryGetRange(),
    /// PDevice::getCurrentMode() or getSupportModes() runs: the device did not answer. Not for a
    /// setting that the device does not have. Any thread.
    static void reportFailure() noexcept;

private:
    quint64 m_before;
};
