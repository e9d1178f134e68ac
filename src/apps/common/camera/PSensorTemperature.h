// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

class PDevice;

/// The temperature of a camera's sensor. The device's thread.
class PSensorTemperature {
public:
    /// Degrees Celsius now, asked of the camera; nothing where it has no such sensor or does not
    /// tell.
    static std::optional<double> of(const PDevice& device);
};
