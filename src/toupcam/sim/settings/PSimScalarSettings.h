// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/toupcam.h>

#include <array>
#include <cstddef>

/// Settings that are one whole number each, or a switch.
enum class PSimScalar {
    Hue,
    Saturation,
    Brightness,
    Contrast,
    Gamma,
    Negative,
    Chrome,
    VFlip,
    HFlip,
    LightFrequency, ///< 0: 60 Hz, 1: 50 Hz, 2: direct current
    Temperature,    ///< of the light taken for white, kelvin
    Tint,
    Count
};

/// The values of these settings, checked. A grey camera returns E_NOTIMPL for those about colour.
/// Any thread may use it under its owner's lock.
class PSimScalarSettings {
public:
    /// Power-on values.
    explicit PSimScalarSettings(bool colour);

    /// Whether this value can be set: S_OK, E_NOTIMPL or E_INVALIDARG. A switch takes any value.
    HRESULT check(PSimScalar scalar, int value) const;
    /// Sets it if check() succeeds; any value but 0 turns a switch on, as 1.
    HRESULT set(PSimScalar scalar, int value);
    /// E_POINTER for a null output, E_NOTIMPL.
    HRESULT get(PSimScalar scalar, int* value) const;
    /// The applied value, whether the camera has the setting or not.
    int value(PSimScalar scalar) const { return m_values[std::size_t(scalar)]; }

private:
    bool has(PSimScalar scalar) const;

    bool m_colour;
    std::array<int, std::size_t(PSimScalar::Count)> m_values;
};
