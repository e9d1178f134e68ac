// SPDX-License-Identifier: MIT
#include <toupcam/sim/settings/PSimSettings.h>

#include <toupcam/sim/frame/PSimWhiteBalance.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr short coldestTarget = -500;
constexpr short warmestTarget = 400;

// The light of a lamp on alternating current pulses twice in each period.
double beatPeriod(int lightFrequency) {
    constexpr double microsecondsInASecond = 1e6;
    constexpr double beats[] = {microsecondsInASecond / 120.0, microsecondsInASecond / 100.0, 0.0};
    return beats[lightFrequency];
}

} // namespace

PSimSettings::PSimSettings(std::shared_ptr<const PSimCameraSpec> spec,
                           std::shared_ptr<PSimThermal> thermal)
    : m_spec(std::move(spec))
    , m_thermal(std::move(thermal))
    , m_rule(m_spec->exposure, m_spec->gain)
    , m_options(*m_spec)
    , m_scalars(m_spec->isColour())
    , m_region(PSimRegion::whole(m_spec->resolutions.front().size()))
    , m_speed(static_cast<unsigned short>((m_spec->speedLevels - 1) / 2))
    , m_auto(m_spec->exposure.automatic)
    , m_target(m_spec->exposure.target)
    , m_exposure{m_spec->exposure.initial, m_spec->gain.initial} {
    m_thermal->drive(cooling());
}

HRESULT PSimSettings::setOption(unsigned option, int value) {
    const std::lock_guard lock(m_mutex);
    const HRESULT result = m_options.set(option, value);
    m_thermal->drive(cooling());
    return result;
}

HRESULT PSimSettings::option(unsigned option, int* value) const {
    const std::lock_guard lock(m_mutex);
    const bool voltage = option == TOUPCAM_OPTION_TEC_VOLTAGE;
    if (!value || !hasCooler() || (!voltage && option != TOUPCAM_OPTION_TEC_VOLTAGE_MAX))
        return m_options.get(option, value);
    *value = voltage ? m_thermal->voltage() : PSimThermal::highestVoltage;
    return S_OK;
}

PSimCooling PSimSettings::cooling() const {
    return {m_options.value(TOUPCAM_OPTION_TEC, 0) != 0, m_targetTemperature,
            m_options.value(TOUPCAM_OPTION_FAN, 0)};
}

HRESULT PSimSettings::setTargetTemperature(short target) {
    if (!hasCooler())
        return E_NOTIMPL;
    if (target < coldestTarget || target > warmestTarget)
        return E_INVALIDARG;
    const std::lock_guard lock(m_mutex);
    m_targetTemperature = target;
    m_thermal->drive(cooling());
    return S_OK;
}

HRESULT PSimSettings::temperature(short* output) const {
    if (!output)
        return E_POINTER;
    if (!hasCooler())
        return E_NOTIMPL;
    *output = short(std::lround(10.0 * m_thermal->celsius()));
    return S_OK;
}

HRESULT PSimSettings::setScalar(PSimScalar scalar, int value) {
    const std::lock_guard lock(m_mutex);
    return m_scalars.set(scalar, value);
}

HRESULT PSimSettings::scalar(PSimScalar scalar, int* value) const {
    const std::lock_guard lock(m_mutex);
    return m_scalars.get(scalar, value);
}

HRESULT PSimSettings::setTempTint(int temperature, int tint) {
    const std::lock_guard lock(m_mutex);
    for (const HRESULT result : {m_scalars.check(PSimScalar::Temperature, temperature),
                                 m_scalars.check(PSimScalar::Tint, tint)}) {
        if (FAILED(result))
            return result;
    }
    m_scalars.set(PSimScalar::Temperature, temperature);
    return m_scalars.set(PSimScalar::Tint, tint);
}

HRESULT PSimSettings::tempTint(int* temperature, int* tint) const {
    if (!temperature || !tint)
        return E_POINTER;
    const std::lock_guard lock(m_mutex);
    m_scalars.get(PSimScalar::Temperature, temperature);
    return m_scalars.get(PSimScalar::Tint, tint);
}

HRESULT PSimSettings::setRealTime(int value) {
    // Every mode has the same effect: the simulated camera never queues frames.
    return value >= 0 && value <= 2 ? S_OK : E_INVALIDARG;
}

HRESULT PSimSettings::setResolution(unsigned index) {
    if (index >= m_spec->resolutions.size())
        return E_INVALIDARG;
    const std::lock_guard lock(m_mutex);
    if (index != m_resolution)
        m_region = PSimRegion::whole(m_spec->resolutions[index].size());
    m_resolution = index;
    return S_OK;
}

unsigned PSimSettings::resolution() const {
    const std::lock_guard lock(m_mutex);
    return m_resolution;
}

HRESULT PSimSettings::setRegion(const PSimRegion& region) {
    if (!m_spec->hasGeometry())
        return E_NOTIMPL;
    const std::lock_guard lock(m_mutex);
    const PSimSize size = m_spec->resolutions[m_resolution].size();
    const PSimRegion requested = region == PSimRegion() ? PSimRegion::whole(size) : region;
    if (!requested.fits(size))
        return E_INVALIDARG;
    m_region = requested;
    return S_OK;
}

PSimRegion PSimSettings::region() const {
    const std::lock_guard lock(m_mutex);
    return m_region;
}

PSimSize PSimSettings::finalSize() const {
    const std::lock_guard lock(m_mutex);
    return makeGeometry(m_resolution).finalSize();
}

HRESULT PSimSettings::setSpeed(unsigned short level) {
    if (level >= m_spec->speedLevels)
        return E_INVALIDARG;
    const std::lock_guard lock(m_mutex);
    m_speed = level;
    return S_OK;
}

unsigned short PSimSettings::speed() const {
    const std::lock_guard lock(m_mutex);
    return m_speed;
}

HRESULT PSimSettings::setAutoExposure(bool on) {
    const std::lock_guard lock(m_mutex);
    m_auto = on;
    return S_OK;
}

bool PSimSettings::autoExposure() const {
    const std::lock_guard lock(m_mutex);
    return m_auto;
}

HRESULT PSimSettings::setTarget(unsigned short target) {
    if (target < 10 || target > 235)
        return E_INVALIDARG;
    const std::lock_guard lock(m_mutex);
    m_target = target;
    return S_OK;
}

unsigned short PSimSettings::target() const {
    const std::lock_guard lock(m_mutex);
    return m_target;
}

HRESULT PSimSettings::setExposureTime(unsigned microseconds) {
    if (microseconds < m_spec->exposure.minimum || microseconds > m_spec->exposure.maximum)
        return E_INVALIDARG;
    const std::lock_guard lock(m_mutex);
    m_exposure.microseconds = microseconds;
    return S_OK;
}

HRESULT PSimSettings::setGain(unsigned short percent) {
    if (percent < m_spec->gain.minimum || percent > m_spec->gain.maximum)
        return E_INVALIDARG;
    const std::lock_guard lock(m_mutex);
    m_exposure.gainPercent = percent;
    return S_OK;
}

PSimExposure PSimSettings::exposure() const {
    const std::lock_guard lock(m_mutex);
    return m_exposure;
}

PSimShot PSimSettings::shot() const {
    const std::lock_guard lock(m_mutex);
    return makeShot(m_resolution);
}

PSimShot PSimSettings::shotAt(unsigned resolution) const {
    const std::lock_guard lock(m_mutex);
    return makeShot(resolution);
}

// Called under the lock, as those below.
PSimShot PSimSettings::makeShot(unsigned resolution) const {
    PSimShot shot;
    shot.resolution = resolution;
    shot.blueFirst = m_options.value(TOUPCAM_OPTION_BYTEORDER, 0) == 1;
    shot.exposureMs = m_exposure.microseconds / 1000.0;
    shot.gain = m_exposure.gainPercent / 100.0;
    shot.sensorCelsius = m_thermal->celsius();
    shot.geometry = makeGeometry(resolution);
    shot.imageSettings = imageSettings();
    return shot;
}

PSimGeometry PSimSettings::makeGeometry(unsigned resolution) const {
    const int binning = m_options.value(TOUPCAM_OPTION_BINNING, 1);
    PSimGeometry geometry;
    geometry.region = m_region.scaled(m_spec->resolutions[m_resolution].size(),
                                      m_spec->resolutions[resolution].size());
    geometry.binning = unsigned(binning & ~PSimOptions::averageBit);
    geometry.average = (binning & PSimOptions::averageBit) != 0;
    geometry.rotation = unsigned(m_options.value(TOUPCAM_OPTION_ROTATE, 0));
    geometry.hFlip = m_scalars.value(PSimScalar::HFlip) != 0;
    geometry.vFlip = m_scalars.value(PSimScalar::VFlip) != 0;
    return geometry;
}

PSimImageSettings PSimSettings::imageSettings() const {
    PSimImageSettings result;
    result.hue = m_scalars.value(PSimScalar::Hue);
    result.saturation = m_scalars.value(PSimScalar::Saturation);
    result.brightness = m_scalars.value(PSimScalar::Brightness);
    result.contrast = m_scalars.value(PSimScalar::Contrast);
    result.gamma = m_scalars.value(PSimScalar::Gamma);
    result.negative = m_scalars.value(PSimScalar::Negative) != 0;
    result.chrome = m_scalars.value(PSimScalar::Chrome) != 0;
    result.temperature = m_scalars.value(PSimScalar::Temperature);
    result.tint = m_scalars.value(PSimScalar::Tint);
    result.whiteBalanceGains = m_options.value(TOUPCAM_OPTION_WBGAIN, 1) != 0;
    result.colourMatrix = m_options.value(TOUPCAM_OPTION_COLORMATIX, 1) != 0;
    return result;
}

double PSimSettings::framesPerSecond() const {
    const PSimResolution& mode = m_spec->resolutions[m_resolution];
    double result = mode.framesPerSecond * (m_speed + 1.0) / m_spec->speedLevels;
    if (m_spec->linkMegabytes > 0.0) {
        const double share = m_options.value(TOUPCAM_OPTION_BANDWIDTH, 100) / 100.0;
        // The link carries one byte a pixel, as the sensor has it; colour is made from it later.
        const double pixels = double(mode.width) * mode.height;
        result = std::min(result, m_spec->linkMegabytes * 1e6 * share / pixels);
    }
    const int limit = m_options.value(TOUPCAM_OPTION_FRAMERATE, 0);
    return limit > 0 ? std::min(result, double(limit)) : result;
}

PSimPace PSimSettings::pace() const {
    const std::lock_guard lock(m_mutex);
    const double seconds = std::max(1.0 / framesPerSecond(), m_exposure.microseconds * 1e-6);
    const int mode = m_options.value(TOUPCAM_OPTION_TRIGGER, 0);
    return {std::chrono::nanoseconds(std::int64_t(seconds * 1e9)), PSimTrigger::Mode(mode)};
}

bool PSimSettings::adapt(double mean) {
    const std::lock_guard lock(m_mutex);
    if (!m_auto)
        return false;
    const int frequency = m_scalars.value(PSimScalar::LightFrequency);
    const PSimExposure next = m_rule.next(m_exposure, mean, m_target, beatPeriod(frequency));
    if (next == m_exposure)
        return false;
    m_exposure = next;
    return true;
}

void PSimSettings::balance(const PSimMeans& means) {
    const PSimWhiteBalance::Setting setting = PSimWhiteBalance::balancing(means);
    setTempTint(setting.temperature, setting.tint);
}
