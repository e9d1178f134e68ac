// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>

/// A lamp fed with alternating current, seen through a rolling shutter. Its power follows the
/// square of the current, 2 sin^2(2 pi f t) = 1 - cos(4 pi f t) with the mean 1; the integral over
/// an exposure of length T from t on is
///
///     T x (1 - sin(2 pi f T) / (2 pi f T) x cos(4 pi f t + 2 pi f T))
///
/// and does not depend on t where T is a multiple of half a period. Immutable, callable from any
/// thread.
class PSimFlicker {
public:
    /// Frequency of the mains (0: direct current), and times in seconds: of the exposure, when row
    /// 0 begins to be exposed, and from row to row.
    PSimFlicker(double mainsHz, double exposure, double start, double rowTime)
        : m_angularFrequency(turn * mainsHz)
        , m_exposure(exposure)
        , m_start(start)
        , m_rowTime(rowTime) {}

    bool isSteady() const { return m_angularFrequency * m_exposure == 0.0; }

    /// The light on a row of the sensor, as a share of the mean; not to be called for steady light.
    double rowLight(unsigned row) const {
        const double width = m_angularFrequency * m_exposure;
        const double phase = 2.0 * m_angularFrequency * (m_start + row * m_rowTime);
        return 1.0 - std::sin(width) / width * std::cos(phase + width);
    }

private:
    static constexpr double turn = 6.283185307179586;

    double m_angularFrequency;
    double m_exposure;
    double m_start;
    double m_rowTime;
};
