// SPDX-License-Identifier: MIT
#include <toupcam/sim/PSimOptions.h>

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

HRESULT checkBinning(int value) {
    constexpr int kAverage = 0x80;
    return value >= kAverage ? inRange(value, kAverage + 2, kAverage + 4) : inRange(value, 1, 4);
}

HRESULT checkRotation(int degrees) {
    return degrees % 90 == 0 ? inRange(degrees, 0, 270) : E_INVALIDARG;
}

HRESULT checkOption(unsigned option, int value) {
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
    case TOUPCAM_OPTION_BINNING:
        return checkBinning(value);
    case TOUPCAM_OPTION_ROTATE:
        return checkRotation(value);
    default: // switches
        return inRange(value, 0, 1);
    }
}

} // namespace

PSimOptions::PSimOptions(const PSimCameraSpec& spec)
    : m_values{
          {TOUPCAM_OPTION_PROCESSMODE, 0}, {TOUPCAM_OPTION_RAW, 0},
          {TOUPCAM_OPTION_TRIGGER, 0},     {TOUPCAM_OPTION_FRAMERATE, 0},
          {TOUPCAM_OPTION_MULTITHREAD, 1}, {TOUPCAM_OPTION_BYTEORDER, 0},
      } {
    if (spec.flags & TOUPCAM_FLAG_BANDWIDTH)
        m_values[TOUPCAM_OPTION_BANDWIDTH] = 100;
    if (spec.isColour()) {
        m_values[TOUPCAM_OPTION_COLORMATIX] = 1;
        m_values[TOUPCAM_OPTION_WBGAIN] = 1;
    }
    if (spec.hasGeometry()) {
        m_values[TOUPCAM_OPTION_BINNING] = 1;
        m_values[TOUPCAM_OPTION_ROTATE] = 0;
    }
}

HRESULT PSimOptions::set(unsigned option, int value) {
    const auto found = m_values.find(option);
    if (found == m_values.end())
        return E_NOTIMPL;
    const HRESULT result = checkOption(option, value);
    if (SUCCEEDED(result))
        found->second = value;
    return result;
}

HRESULT PSimOptions::get(unsigned option, int* output) const {
    if (!output)
        return E_POINTER;
    const auto found = m_values.find(option);
    if (found == m_values.end())
        return E_NOTIMPL;
    *output = found->second;
    return S_OK;
}

int PSimOptions::value(unsigned option, int otherwise) const {
    const auto found = m_values.find(option);
    return found == m_values.end() ? otherwise : found->second;
}
