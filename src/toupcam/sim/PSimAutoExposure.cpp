// SPDX-License-Identifier: MIT
#include <toupcam/sim/PSimAutoExposure.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr double kTolerance = 0.02; // share of the target that is near enough
constexpr double kDamping = 0.7;    // share of the error, in stops, that one frame corrects
constexpr double kLargestStep = 4.0;

} // namespace

PSimAutoExposure::PSimAutoExposure(const PSimExposureSpec& exposure, const PSimGainSpec& gain)
    : m_exposure(exposure)
    , m_gain(gain) {
}

PSimExposure PSimAutoExposure::next(PSimExposure current, double mean, double target) const {
    if (std::abs(mean - target) <= kTolerance * target)
        return current;
    const double ratio = std::clamp(target / std::max(mean, 1.0), 1.0 / kLargestStep, kLargestStep);
    // Exposure time and gain act on the brightness alike, so their product is what is corrected.
    const double light =
        current.microseconds * (current.gainPercent / 100.0) * std::pow(ratio, kDamping);
    PSimExposure result;
    const double longest = std::max(m_exposure.automaticMaximum, m_exposure.minimum);
    const double time = std::clamp(light / (m_gain.minimum / 100.0),
                                   static_cast<double>(m_exposure.minimum), longest);
    const double gain = std::clamp(100.0 * light / time, static_cast<double>(m_gain.minimum),
                                   static_cast<double>(m_gain.maximum));
    result.microseconds = static_cast<unsigned>(std::lround(time));
    result.gainPercent = static_cast<unsigned short>(std::lround(gain));
    return result;
}
