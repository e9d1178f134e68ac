// SPDX-License-Identifier: MIT
#include <PGui/PRangeScale.h>

#include <QLocale>
#include <QString>

#include <algorithm>
#include <cmath>

namespace {

constexpr int mostDecimals = 6;
/// More positions than a slider has pixels, so that each pixel has at least one.
constexpr int mostLinearPositions = 10000;
/// A thousand over six or seven decades: about 1.5 per cent from one to the next.
constexpr int logarithmicPositions = 1000;
constexpr double logarithmicRatio = 1000;
/// Tolerance for the rounding of quotients that should be whole.
constexpr double tolerance = 1e-6;

double powerOfTen(int exponent) {
    return std::pow(10.0, exponent);
}

int toDecade(double value) {
    return int(std::floor(std::log10(value) + tolerance));
}

/// Three digits, the precision of dragging a slider.
double toThreeDigits(double value) {
    const double unit = powerOfTen(toDecade(value) - 2);
    return std::round(value / unit) * unit;
}

} // namespace

PRangeScale::PRangeScale(const PMinMaxRange<double>& range)
    : m_minimum(range.minimum)
    , m_maximum(std::max(range.minimum, range.maximum))
    , m_step(range.step > 0 ? range.step : (m_maximum - m_minimum) / 100)
    , m_logarithmic(m_minimum > 0 && m_maximum / m_minimum >= logarithmicRatio)
    , m_decimals(
          std::max({countDecimals(m_minimum), countDecimals(m_maximum), countDecimals(m_step)})) {
    const double steps = std::min(std::ceil(stepCount() - tolerance), double(mostLinearPositions));
    m_lastPosition = m_logarithmic ? logarithmicPositions : int(steps);
}

int PRangeScale::countDecimals(double number) {
    if (std::floor(number) == number)
        return 0; // without the text, as most scales are whole
    // Rounded first: 0.1 + 0.2 has one decimal, not seventeen.
    const double unit = powerOfTen(mostDecimals);
    const QString text = QLocale::c().toString(std::round(number * unit) / unit, 'f',
                                               QLocale::FloatingPointShortest);
    const qsizetype point = text.indexOf(u'.');
    return point < 0 ? 0 : int(std::min<qsizetype>(text.size() - point - 1, mostDecimals));
}

double PRangeScale::stepCount() const {
    return m_step > 0 ? (m_maximum - m_minimum) / m_step : 0;
}

double PRangeScale::rounded(double value) const {
    // Tenths and hundredths come out as the doubles nearest to them: -0.3, not -0.2999…
    const double unit = powerOfTen(m_decimals);
    return std::round(value * unit) / unit;
}

double PRangeScale::snapped(double value) const {
    const double inside = std::clamp(value, m_minimum, m_maximum);
    if (m_step <= 0)
        return inside;
    const double below = m_minimum + std::round((inside - m_minimum) / m_step) * m_step;
    // The last step may be a short one, so that the maximum is reached.
    const bool nearMaximum = below > m_maximum || m_maximum - inside < std::abs(inside - below);
    return nearMaximum ? m_maximum : std::clamp(rounded(below), m_minimum, m_maximum);
}

double PRangeScale::stepNear(double value) const {
    return m_logarithmic ? std::max(m_step, powerOfTen(toDecade(value) - 1)) : m_step;
}

double PRangeScale::stepUp(double value) const {
    const double step = stepNear(value);
    const double origin = m_logarithmic ? 0 : m_minimum;
    const double next =
        snapped(origin + (std::floor((value - origin) / step + tolerance) + 1) * step);
    return next > value ? next : snapped(value + m_step);
}

double PRangeScale::stepDown(double value) const {
    // Taken just below the value, so that stepping down reverses stepping up.
    const double step = stepNear(m_logarithmic ? value * (1 - 1e-5) : value);
    const double origin = m_logarithmic ? 0 : m_minimum;
    const double next =
        snapped(origin + (std::ceil((value - origin) / step - tolerance) - 1) * step);
    return next < value ? next : snapped(value - m_step);
}

double PRangeScale::stepped(double value, int count) const {
    for (; count > 0 && value < m_maximum; --count)
        value = value < m_minimum ? m_minimum : stepUp(value);
    for (; count < 0 && value > m_minimum; ++count)
        value = value > m_maximum ? m_maximum : stepDown(value);
    return value;
}

bool PRangeScale::skipsValues() const {
    return !m_logarithmic && stepCount() > m_lastPosition;
}

double PRangeScale::valueAt(int position) const {
    if (position <= 0)
        return m_minimum;
    if (position >= m_lastPosition)
        return m_maximum;
    const double part = double(position) / m_lastPosition;
    if (m_logarithmic)
        return snapped(toThreeDigits(m_minimum * std::pow(m_maximum / m_minimum, part)));
    if (skipsValues())
        return snapped(m_minimum + part * (m_maximum - m_minimum));
    return snapped(m_minimum + position * m_step);
}

int PRangeScale::toPosition(double value) const {
    if (value <= m_minimum || m_lastPosition == 0)
        return 0;
    if (value >= m_maximum)
        return m_lastPosition;
    double position = (value - m_minimum) / m_step;
    if (m_logarithmic)
        position = std::log(value / m_minimum) / std::log(m_maximum / m_minimum) * m_lastPosition;
    else if (skipsValues())
        position = (value - m_minimum) / (m_maximum - m_minimum) * m_lastPosition;
    return std::clamp(int(std::round(position)), std::min(1, m_lastPosition),
                      std::max(m_lastPosition - 1, 0));
}
