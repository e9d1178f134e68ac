// SPDX-License-Identifier: MIT
#include <toupcam/sim/settings/PSimThermal.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr double timeConstant = 40.0; // seconds
constexpr double idleHeat = 3.0;      // kelvin above the air
constexpr double streamHeat = 9.0;
constexpr double fanRelief = 0.5;         // share of the heat that a full fan carries away
constexpr double strongestCooling = 45.0; // kelvin
constexpr double coolingWithoutFan = 0.4;
constexpr double voltageAKelvin = 0.25;

constexpr double loopStep = 0.25; // seconds: small beside 3 s, the loop's own time constant
constexpr double longEnough = 20.0 * timeConstant; // everything has settled after that

} // namespace

PSimThermal::PSimThermal(const PSimCameraSpec& spec)
    : m_ambient(spec.ambientCelsius)
    , m_speed(spec.thermalSpeed)
    , m_fanLevels(spec.fanLevels)
    , m_celsius(m_ambient + idleHeat)
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
    return int(std::lround(highestVoltage * voltageShare()));
}

// Called under the lock, as all below: computes the temperature up to now.
void PSimThermal::advance() {
    const Clock::time_point now = Clock::now();
    const std::chrono::duration<double> passed = now - m_when;
    m_when = now;
    double left = std::min(passed.count() * m_speed, longEnough);
    while (left > loopStep) {
        step(loopStep);
        left -= loopStep;
    }
    step(left);
}

void PSimThermal::step(double seconds) {
    const double end = uncooled() - voltageShare() * mostCooling();
    m_celsius += (end - m_celsius) * seconds / timeConstant;
}

double PSimThermal::fanShare() const {
    return m_fanLevels > 0 ? double(m_cooling.fan) / m_fanLevels : 0.0;
}

double PSimThermal::uncooled() const {
    const double heat = idleHeat + (m_streams > 0 ? streamHeat : 0.0);
    return m_ambient + heat * (1.0 - fanRelief * fanShare());
}

double PSimThermal::mostCooling() const {
    return strongestCooling * (coolingWithoutFan + (1.0 - coolingWithoutFan) * fanShare());
}

double PSimThermal::voltageShare() const {
    if (!m_cooling.cooler)
        return 0.0;
    const double target = m_cooling.target / 10.0;
    const double holding = (uncooled() - target) / mostCooling();
    return std::clamp(holding + voltageAKelvin * (m_celsius - target), 0.0, 1.0);
}
