// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/metadata/PPictureMetadata.h>

struct PDeviceSettings;

/// The settings of a frame as texts for files.
class PSettingTexts {
public:
    /// English titles as keys, values with their units; a setting without a title has the key
    /// "Setting ID". Left out are exposure times, which are in PFrameExposure::timeText(), settings
    /// of the trigger if the frame was not triggered, and a fan that could not be read. Any thread.
    static PPictureMetadata of(const PDeviceSettings& settings);
};
