// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/frame/PSimGeometry.h>
#include <toupcam/sim/frame/PSimImageSettings.h>

/// The settings with which one frame is taken. Plain values.
struct PSimShot {
    unsigned resolution = 0;
    bool blueFirst = false;
    double exposureMs = 0.0;
    double gain = 1.0;
    double sensorCelsius = 25.0;
    PSimGeometry geometry;
    PSimImageSettings imageSettings;
};
