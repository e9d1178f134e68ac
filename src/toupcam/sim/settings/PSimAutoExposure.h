// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/scene/PSimScene.h>

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

    /// The exposure of the next frame when this one was taken with `current` and has the mean
    /// brightness `mean`, with `target` as the aim (both 0 … 255): time first, then gain.
    /// Unchanged when the brightness is near enough or at its limit. With a `beat`, the period of
    /// the lamp's pulses (microseconds, 0: steady), a time as long or longer is a multiple of it,
    /// and the gain makes up for the rest.
    PSimExposure next(PSimExposure current, double mean, double target, double beat) const;

private:
    double allowed(double microseconds, double beat) const;

    PSimExposureSpec m_exposure;
    PSimGainSpec m_gain;
};
