// SPDX-License-Identifier: MIT
#include <toupcam/sim/settings/PSimOptions.h>

namespace {

HRESULT inRange(int value, int minimum, int maximum) {
    return value >= minimum && value <= maximum ? S_OK : E_INVALIDARG;
}

// Only 0 is supported; 1 exists in the SDK but not here.
HRESULT onlyZero(int value) {
    if (value == 0)
        return S_OK;
    return value == 1 ? E_NOTIMPL : E_INVALIDARG;
}

HRESULT checkBinning(int value) {
    return value >= PSimOptions::averageBit
               ? inRange(value, PSimOptions::averageBit + 2, PSimOptions::averageBit + 4)
               : inRange(value, 1, 4);
}

HRESULT checkRotation(int degrees) {
    return degrees % 90 == 0 ? inRange(degrees, 0, 270) : E_INVALIDARG;
}

HRESULT checkTrigger(int mode, std::uint64_t flags) {
    constexpr std::uint64_t needed[] = {0, TOUPCAM_FLAG_TRIGGER_SOFTWARE,
                                        TOUPCAM_FLAG_TRIGGER_EXTERNAL};
    if (inRange(mode, 0, 2) != S_OK)
        return E_INVALIDARG;
    return mode == 0 || (flags & needed[mode]) ? S_OK : E_NOTIMPL;
}

} // namespace

HRESULT PSimOptions::check(unsigned option, int value) const {
    switch (option) {
    case TOUPCAM_OPTION_PROCESSMODE:
    case TOUPCAM_OPTION_RAW:
        return onlyZero(value);
    case TOUPCAM_OPTION_TRIGGER:
        return checkTrigger(value, m_flags);
    case TOUPCAM_OPTION_FRAMERATE:
        return inRange(value, 0, 10000);
    case TOUPCAM_OPTION_BANDWIDTH:
        return inRange(value, 1, 100);
    case TOUPCAM_OPTION_FAN:
        return inRange(value, 0, m_fanLevels);
    case TOUPCAM_OPTION_BINNING:
        return checkBinning(value);
    case TOUPCAM_OPTION_ROTATE:
        return checkRotation(value);
    default: // switches
        return inRange(value, 0, 1);
    }
}

PSimOptions::PSimOptions(const PSimCameraSpec& spec)
    : m_flags(spec.flags)
    , m_fanLevels(int(spec.fanLevels))
    , m_values{
          {TOUPCAM_OPTION_PROCESSMODE, 0}, {TOUPCAM_OPTION_RAW, 0},
          {TOUPCAM_OPTION_TRIGGER, 0},     {TOUPCAM_OPTION_FRAMERATE, 0},
          {TOUPCAM_OPTION_MULTITHREAD, 1}, {TOUPCAM_OPTION_BYTEORDER, 0},
      } {
    if (spec.flags & TOUPCAM_FLAG_BANDWIDTH)
        m_values[TOUPCAM_OPTION_BANDWIDTH] = 100;
    if (spec.flags & TOUPCAM_FLAG_FAN)
        m_values[TOUPCAM_OPTION_FAN] = 0;
    if (spec.flags & TOUPCAM_FLAG_TEC_ONOFF)
        m_values[TOUPCAM_OPTION_TEC] = 0;
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
    const HRESULT result = check(option, value);
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
