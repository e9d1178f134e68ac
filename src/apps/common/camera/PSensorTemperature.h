// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

class PDevice;

/// The temperature of a camera's sensor. The device's thread.
class PSensorTemperature {
public:
    /// Degrees Celsius, read from the camera; nothing if it has no such sensor or reading fails.
    static std::optional<double> of(const PDevice& device);
};
