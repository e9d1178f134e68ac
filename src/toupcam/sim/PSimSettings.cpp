// SPDX-License-Identifier: MIT
#include <toupcam/sim/PSimSettings.h>

#include <algorithm>
#include <utility>

namespace {

HRESULT inRange(int value, int minimum, int maximum) {
    return value >= minimum && value <= maximum ? S_OK : E_INVALIDARG;
}

// 0 is what the simulator does; the other values exist in the SDK but do nothing here.
HRESULT onlyZero(int value, int maximum) {
    if (value == 0)
        return S_OK;
    return inRange(value, 0, maximum) == S_OK ? E_NOTIMPL : E_INVALIDARG;
}

std::map<unsigned, int> powerOnOptions(const PSimCameraSpec& spec) {
    std::map<unsigned, int> options = {
        {TOUPCAM_OPTION_PROCESSMODE, 0}, {TOUPCAM_OPTION_RAW, 0},
        {TOUPCAM_OPTION_TRIGGER, 0},     {TOUPCAM_OPTION_FRAMERATE, 0},
        {TOUPCAM_OPTION_MULTITHREAD, 1}, {TOUPCAM_OPTION_BYTEORDER, 0},
    };
    if (spec.flags & TOUPCAM_FLAG_BANDWIDTH)
        options[TOUPCAM_OPTION_BANDWIDTH] = 100;
    return options;
}

} // namespace

PSimSettings::PSimSettings(std::shared_ptr<const PSimCameraSpec> spec)
    : m_spec(std::move(spec))
    , m_rule(m_spec->exposure, m_spec->gain)
    , m_options(powerOnOptions(*m_spec))
    , m_speed(static_cast<unsigned short>((m_spec->speedLevels - 1) / 2))
    , m_auto(m_spec->exposure.automatic)
    , m_target(m_spec->exposure.target)
    , m_exposure{m_spec->exposure.initial, m_spec->gain.initial} {
}

HRESULT PSimSettings::checkOption(unsigned option, int value) const {
    switch (option) {
    case TOUPCAM_OPTION_PROCESSMODE:
    case TOUPCAM_OPTION_RAW:
        return onlyZero(value, 1);
    case TOUPCAM_OPTION_TRIGGER:
        return onlyZero(value, 2);
    case TOUPCAM_OPTION_FRAMERATE:
        return inRange(value, 0, 10000);
    case TOUPCAM_OPTION_BANDWIDTH:
        return inRange(value, 1, 100);
    default: // byte order, multithread
        return inRange(value, 0, 1);
    }
}

HRESULT PSimSettings::setOption(unsigned option, int value) {
    const std::lock_guard lock(m_mutex);
    const auto found = m_options.find(option);
    if (found == m_options.end())
        return E_NOTIMPL;
    const HRESULT result = checkOption(option, value);
    if (SUCCEEDED(result))
        found->second = value;
    return result;
}

HRESULT PSimSettings::option(unsigned option, int* value) const {
    if (!value)
        return E_POINTER;
    const std::lock_guard lock(m_mutex);
    const auto found = m_options.find(option);
    if (found == m_options.end())
        return E_NOTIMPL;
    *value = found->second;
    return S_OK;
}

HRESULT PSimSettings::setRealTime(int value) {
    // Every mode comes to the same here: the simulated camera never queues frames.
    return inRange(value, 0, 2);
}

HRESULT PSimSettings::setResolution(unsigned index) {
    if (index >= m_spec->resolutions.size())
        return E_INVALIDARG;
    const std::lock_guard lock(m_mutex);
    m_resolution = index;
    return S_OK;
}

unsigned PSimSettings::resolution() const {
    const std::lock_guard lock(m_mutex);
    return m_resolution;
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
    return {m_resolution, m_options.at(TOUPCAM_OPTION_BYTEORDER) == 1,
            m_exposure.microseconds / 1000.0, m_exposure.gainPercent / 100.0};
}

double PSimSettings::framesPerSecond() const {
    const PSimResolution& mode = m_spec->resolutions[m_resolution];
    double result = mode.framesPerSecond * (m_speed + 1.0) / m_spec->speedLevels;
    if (m_spec->linkMegabytes > 0.0) {
        const auto found = m_options.find(TOUPCAM_OPTION_BANDWIDTH);
        const double share = found == m_options.end() ? 1.0 : found->second / 100.0;
        // The link carries one byte a pixel, as the sensor has it; colour is made from it later.
        const double pixels = static_cast<double>(mode.width) * mode.height;
        result = std::min(result, m_spec->linkMegabytes * 1e6 * share / pixels);
    }
    const int limit = m_options.at(TOUPCAM_OPTION_FRAMERATE);
    return limit > 0 ? std::min(result, static_cast<double>(limit)) : result;
}

std::chrono::nanoseconds PSimSettings::period() const {
    const std::lock_guard lock(m_mutex);
    const double seconds = std::max(1.0 / framesPerSecond(), m_exposure.microseconds * 1e-6);
    return std::chrono::nanoseconds(static_cast<std::int64_t>(seconds * 1e9));
}

bool PSimSettings::adapt(double mean) {
    const std::lock_guard lock(m_mutex);
    if (!m_auto)
        return false;
    const PSimExposure next = m_rule.next(m_exposure, mean, m_target);
    if (next == m_exposure)
        return false;
    m_exposure = next;
    return true;
}
