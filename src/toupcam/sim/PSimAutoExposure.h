// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/PSimScene.h>

/// An exposure time and a gain that belong together.
struct PSimExposure {
    unsigned microseconds = 0;
    unsigned short gainPercent = 100;

    bool operator==(const PSimExposure& other) const {
        return microseconds == other.microseconds && gainPercent == other.gainPercent;
    }
};

/// The auto-exposure rule. Callable from any thread.
class PSimAutoExposure {
public:
    PSimAutoExposure(const PSimExposureSpec& exposure, const PSimGainSpec& gain);

    /// What to expose the next frame with, when this one was taken with `current` and its mean
    /// brightness is `mean` where `target` is wanted (both 0 … 255): time first, then gain. The
    /// same again when the brightness is near enough or nothing more can be done.
    PSimExposure next(PSimExposure current, double mean, double target) const;

private:
    PSimExposureSpec m_exposure;
    PSimGainSpec m_gain;
};
