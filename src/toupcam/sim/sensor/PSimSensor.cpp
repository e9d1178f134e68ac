// SPDX-License-Identifier: MIT
#include <toupcam/sim/sensor/PSimSensor.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr std::size_t noiseSize = std::size_t{1} << 18;
constexpr double noiseDeviation = 28.0; // 4.5 standard deviations fit into a signed byte
constexpr double unitsACount = 16.0;

// Normally distributed numbers by the method of Box and Muller (1958).
std::vector<std::int8_t> normalNoise() {
    constexpr std::uint64_t pieceSeed =
        1908; // any: which piece is used where depends on the sensor
    PSimRandom random(pieceSeed);
    std::vector<std::int8_t> noise(noiseSize);
    for (std::size_t i = 0; i < noiseSize; i += 2) {
        const double radius = noiseDeviation * std::sqrt(-2.0 * std::log(1.0 - random.uniform()));
        const double angle = 6.283185307179586 * random.uniform();
        const auto byte = [](double value) {
            return std::int8_t(std::clamp(std::lround(value), -127L, 127L));
        };
        noise[i] = byte(radius * std::cos(angle));
        noise[i + 1] = byte(radius * std::sin(angle));
    }
    return noise;
}

// One supply for all sensors, created with the first picture; never freed, as SDK threads may
// outlive the end of main().
const std::vector<std::int8_t>& noiseSupply() {
    static const auto* const noise = new std::vector<std::int8_t>(normalNoise());
    return *noise;
}

std::uint16_t limited(double value, double maximum) {
    return std::uint16_t(std::lround(std::clamp(value, 0.0, maximum)));
}

// Dark current doubles every 6.3 kelvin, as is usual for cooled cameras: between the 4.4 K of
// diffusion current, which goes with the square of silicon's intrinsic carrier density at room
// temperature, and the 8.9 K of depletion current, which goes with the density itself (Sze, Physics
// of Semiconductor Devices).
double darkElectrons(const PSimSensorSpec& spec, const PSimShot& shot) {
    const double current = spec.darkCurrent * std::exp2((shot.sensorCelsius - 25.0) / 6.3);
    return std::min(current * shot.exposureMs / 1000.0, spec.fullWell);
}

// The limits keep the sum of signal and dark current, offset and both noises within 16 bits: 15000
// + 1033 + 8096 + 8128 units.
constexpr double mostUnits = 15000.0;

// `light` is the share of the lamp's mean.
PSimRowFactors makeFactors(const PSimSensorSpec& spec, const PSimShot& shot, double light) {
    const double countsAnElectron = shot.gain / spec.electronsPerCount;
    const double dark = darkElectrons(spec, shot);
    const double darkUnits = std::min(dark * countsAnElectron * unitsACount, mostUnits);
    const double signal = light * spec.electronsPerMs * shot.exposureMs / 255.0 * countsAnElectron;
    // Shot noise: the variance in counts is (signal x light) x countsAnElectron.
    const double shotScale = std::sqrt(signal * countsAnElectron) / noiseDeviation / 16.0;
    const double readNoise = std::sqrt(spec.readNoise * spec.readNoise + dark);
    const double readScale = readNoise * countsAnElectron / noiseDeviation / 256.0;
    PSimRowFactors factors;
    factors.signal = limited(signal * 4096.0, 65535.0);
    factors.ceiling =
        limited((spec.fullWell - dark) * countsAnElectron * unitsACount, mostUnits - darkUnits);
    factors.shot = std::int16_t(limited(shotScale * unitsACount * 65536.0, 16383.0));
    factors.read = std::int16_t(limited(readScale * unitsACount * 65536.0, 16383.0));
    // Half a count for rounding; one unit because each of the three products is rounded down.
    factors.offset = std::int16_t(std::lround(spec.offset * unitsACount + darkUnits) + 8 + 1);
    return factors;
}

} // namespace

PSimSensor::PSimSensor(const PSimSensorSpec& spec, const PSimLight& light, unsigned x, unsigned y,
                       const PSimShot& shot, const PSimFlicker& flicker, std::uint64_t seed)
    : m_spec(spec)
    , m_light(light)
    , m_shot(shot)
    , m_flicker(flicker)
    , m_factors(makeFactors(spec, shot, 1.0))
    , m_row(shot.geometry.region.y)
    , m_rowBytes(std::size_t{shot.geometry.region.width} * light.channels)
    , m_from(y * light.rowBytes() + std::size_t{x} * light.channels)
    , m_random(seed) {
}

void PSimSensor::next(std::uint8_t* out) {
    if (!m_flicker.isSteady())
        m_factors = makeFactors(m_spec, m_shot, m_flicker.rowLight(m_row));
    const std::vector<std::int8_t>& noise = noiseSupply();
    const std::size_t room = noiseSize - m_rowBytes;
    const std::int8_t* shotNoise = noise.data() + m_random.below(room);
    const std::int8_t* readNoise = noise.data() + m_random.below(room);
    simExposeRow(m_light.values.data() + m_from, m_light.roots.data() + m_from, shotNoise,
                 readNoise, m_rowBytes, m_factors, out);
    m_from += m_light.rowBytes();
    ++m_row;
}
