// SPDX-License-Identifier: MIT
#include <toupcam/sim/settings/PSimThermal.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr double kTimeConstant = 40.0; // seconds
constexpr double kIdleHeat = 3.0;      // kelvin above the air
constexpr double kStreamHeat = 9.0;
constexpr double kFanRelief = 0.5;    // share of the heat that a full fan carries away
constexpr double kMostCooling = 45.0; // kelvin
constexpr double kCoolingWithoutFan = 0.4;
constexpr double kVoltageAKelvin = 0.25;

constexpr double kLoopStep = 0.25; // seconds: small beside 3 s, the loop's own time constant
constexpr double kLongEnough = 20.0 * kTimeConstant; // all is settled after that

} // namespace

PSimThermal::PSimThermal(const PSimCameraSpec& spec)
    : m_ambient(spec.ambientCelsius)
    , m_speed(spec.thermalSpeed)
    , m_fanLevels(spec.fanLevels)
    , m_celsius(m_ambient + kIdleHeat)
    , m_when(Clock::now()) {
}

void PSimThermal::drive(const PSimCooling& cooling) {
    const std::lock_guard lock(m_mutex);
    advance();
    m_cooling = cooling;
}

void PSimThermal::changeStreams(int by) {
    const std::lock_guard lock(m_mutex);
    advance();
    m_streams += by;
}

double PSimThermal::celsius() {
    const std::lock_guard lock(m_mutex);
    advance();
    return m_celsius;
}

int PSimThermal::voltage() {
    const std::lock_guard lock(m_mutex);
    advance();
    return int(std::lround(kHighestVoltage * voltageShare()));
}

// Called under the lock, as all below: brings the temperature up to now.
void PSimThermal::advance() {
    const Clock::time_point now = Clock::now();
    const std::chrono::duration<double> passed = now - m_when;
    m_when = now;
    double left = std::min(passed.count() * m_speed, kLongEnough);
    for (; left > kLoopStep; left -= kLoopStep)
        step(kLoopStep);
    step(left);
}

void PSimThermal::step(double seconds) {
    const double end = uncooled() - voltageShare() * mostCooling();
    m_celsius += (end - m_celsius) * seconds / kTimeConstant;
}

double PSimThermal::fanShare() const {
    return m_fanLevels > 0 ? double(m_cooling.fan) / m_fanLevels : 0.0;
}

double PSimThermal::uncooled() const {
    const double heat = kIdleHeat + (m_streams > 0 ? kStreamHeat : 0.0);
    return m_ambient + heat * (1.0 - kFanRelief * fanShare());
}

double PSimThermal::mostCooling() const {
    return kMostCooling * (kCoolingWithoutFan + (1.0 - kCoolingWithoutFan) * fanShare());
}

double PSimThermal::voltageShare() const {
    if (!m_cooling.cooler)
        return 0.0;
    const double target = m_cooling.target / 10.0;
    const double holding = (uncooled() - target) / mostCooling();
    return std::clamp(holding + kVoltageAKelvin * (m_celsius - target), 0.0, 1.0);
}
