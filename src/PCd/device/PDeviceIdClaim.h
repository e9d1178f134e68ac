// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <QByteArray>

#include <functional>
#include <optional>

/// Reserves a readable id that no other present device of the process has. Any thread.
class PCD_TEST_EXPORT PDeviceIdClaim {
public:
    PDeviceIdClaim() = default;
    ~PDeviceIdClaim();
    PDeviceIdClaim(const PDeviceIdClaim&) = delete;
    PDeviceIdClaim& operator=(const PDeviceIdClaim&) = delete;

    /// The id. The first call claims what `wanted` returns, with "#2", "#3" … after it if that is
    /// taken; later calls return the same.
    QByteArray id(const std::function<QByteArray()>& wanted);

    /// Makes the id available to other devices, while this device keeps it as its name: a camera
    /// that is plugged in again gets its id back even while the removed device still exists.
    void release();

private:
    std::optional<QByteArray> m_id; // an id may be empty: a device without a name
    bool m_held = false;
};
