// SPDX-License-Identifier: MIT
#include <toupcam/sim/settings/PSimScalarSettings.h>

#include <toupcam/sim/frame/PSimWhiteBalance.h>

namespace {

constexpr std::size_t scalarCount = std::size_t(PSimScalar::Count);

struct Rule {
    int minimum;
    int maximum;
    int initial;
    bool isSwitch;
    bool needsColour;
};

// In the order of PSimScalar.
constexpr Rule rules[scalarCount] = {
    {-180, 180, 0, false, true},  // hue
    {0, 255, 128, false, true},   // saturation
    {-64, 64, 0, false, false},   // brightness
    {-100, 100, 0, false, false}, // contrast
    {20, 180, 100, false, false}, // gamma
    {0, 1, 0, true, false},       // negative
    {0, 1, 0, true, true},        // chrome
    {0, 1, 0, true, false},       // vertical flip
    {0, 1, 0, true, false},       // horizontal flip
    {0, 2, 2, false, false},      // light frequency
    {2000, 15000, PSimWhiteBalance::neutralTemperature, false, true},
    {200, 2500, PSimWhiteBalance::neutralTint, false, true},
};

const Rule& findRule(PSimScalar scalar) {
    return rules[std::size_t(scalar)];
}

} // namespace

PSimScalarSettings::PSimScalarSettings(bool colour)
    : m_colour(colour)
    , m_values() {
    for (std::size_t i = 0; i < scalarCount; ++i)
        m_values[i] = rules[i].initial;
}

bool PSimScalarSettings::has(PSimScalar scalar) const {
    return m_colour || !findRule(scalar).needsColour;
}

HRESULT PSimScalarSettings::check(PSimScalar scalar, int value) const {
    if (!has(scalar))
        return E_NOTIMPL;
    const Rule& rule = findRule(scalar);
    const bool fits = rule.isSwitch || (value >= rule.minimum && value <= rule.maximum);
    return fits ? S_OK : E_INVALIDARG;
}

HRESULT PSimScalarSettings::set(PSimScalar scalar, int value) {
    const HRESULT result = check(scalar, value);
    if (SUCCEEDED(result))
        m_values[std::size_t(scalar)] = findRule(scalar).isSwitch && value != 0 ? 1 : value;
    return result;
}

HRESULT PSimScalarSettings::get(PSimScalar scalar, int* output) const {
    if (!output)
        return E_POINTER;
    if (!has(scalar))
        return E_NOTIMPL;
    *output = value(scalar);
    return S_OK;
}
