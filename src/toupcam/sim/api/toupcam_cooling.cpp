// SPDX-License-Identifier: MIT

// The entry points of the SDK for cooler and fan.

#include <toupcam/sim/api/PSimCall.h>

using namespace PSimCall;
using namespace PSimArgument;

HRESULT Toupcam_get_FanMaxSpeed(HToupcam h) {
    return onCamera(__func__, h, [](PSimSession& s) { return HRESULT(s.spec().fanLevels); });
}

HRESULT Toupcam_put_Temperature(HToupcam h, short nTemperature) {
    return changing(
        __func__, h, [&](PSimSettings& s) { return s.setTargetTemperature(nTemperature); },
        nTemperature);
}

HRESULT Toupcam_get_Temperature(HToupcam h, short* pTemperature) {
    return onCamera(
        __func__, h, [&](PSimSession& s) { return s.settings().temperature(pTemperature); },
        out(pTemperature));
}
