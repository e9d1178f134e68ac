// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/PPictureText.h>

struct PDeviceSettings;

/// The settings of a frame as texts for files: English titles as keys, values with their units.
/// What a program does not know by a title is there as "Setting ID". The exposure time is left out:
/// PFrameExposure::timeText() says it. Any thread.
class PSettingTexts {
public:
    static PPictureText of(const PDeviceSettings& settings);
};
