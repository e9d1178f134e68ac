// SPDX-License-Identifier: MIT
#pragma once

/// Settings of the camera's processor for turning the sensor's values into a picture. The defaults
/// change nothing. Plain values.
struct PSimImageSettings {
    int hue = 0;            ///< degrees, -180 … 180
    int saturation = 128;   ///< 0 grey … 128 unchanged … 255
    int brightness = 0;     ///< counts, -64 … 64
    int contrast = 0;       ///< -100 … 100
    int gamma = 100;        ///< 20 … 180; above 100 lightens the middle tones
    bool negative = false;  ///< bright becomes dark
    bool chrome = false;    ///< grey picture of a colour camera
    int temperature = 6503; ///< kelvin: the light that is shown as white
    int tint = 1000;        ///< multiplies green, 200 … 2500
    bool whiteBalanceGains = true;
    bool colourMatrix = true; ///< removes the colour filters' crosstalk
};
