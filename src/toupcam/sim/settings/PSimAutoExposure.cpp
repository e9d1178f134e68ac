// SPDX-License-Identifier: MIT
#include <toupcam/sim/settings/PSimAutoExposure.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr double tolerance = 0.02; // share of the target that is near enough
constexpr double damping = 0.7;    // share of the error, in stops, that one frame corrects
constexpr double largestStep = 4.0;

} // namespace

PSimAutoExposure::PSimAutoExposure(const PSimExposureSpec& exposure, const PSimGainSpec& gain)
    : m_exposure(exposure)
    , m_gain(gain) {
}

double PSimAutoExposure::allowed(double microseconds, double beat) const {
    const double longest = std::max(m_exposure.automaticMaximum, m_exposure.minimum);
    const double time = std::clamp(microseconds, double(m_exposure.minimum), longest);
    if (beat == 0.0 || time < beat)
        return time;
    // Whole microseconds make a multiple up to half of one shorter than it is.
    return std::max(beat * std::floor((time + 0.5) / beat), double(m_exposure.minimum));
}

PSimExposure PSimAutoExposure::next(PSimExposure current, double mean, double target,
                                    double beat) const {
    const double now = current.microseconds;
    const bool steady = std::abs(allowed(now, beat) - now) < 1.0;
    if (steady && std::abs(mean - target) <= tolerance * target)
        return current;
    const double ratio = std::clamp(target / std::max(mean, 1.0), 1.0 / largestStep, largestStep);
    // Exposure time and gain act on the brightness alike, so their product is what is corrected.
    const double light = now * (current.gainPercent / 100.0) * std::pow(ratio, damping);
    const double time = allowed(light / (m_gain.minimum / 100.0), beat);
    const double gain =
        std::clamp(100.0 * light / time, double(m_gain.minimum), double(m_gain.maximum));
    PSimExposure result;
    result.microseconds = unsigned(std::lround(time));
    result.gainPercent = static_cast<unsigned short>(std::lround(gain));
    return result;
}
