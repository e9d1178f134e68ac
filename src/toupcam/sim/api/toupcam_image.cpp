// SPDX-License-Identifier: MIT

// The entry points of the SDK for what the camera's processor does to a picture.

#include <toupcam/sim/api/PSimCall.h>

using namespace PSimCall;
using namespace PSimArgument;

/// A setter and a getter of one whole number.
#define NUMBER(name, which)                                                                        \
    HRESULT Toupcam_put_##name(HToupcam h, int value) {                                            \
        return changing(                                                                           \
            __func__, h, [&](PSimSettings& s) { return s.setNumber(which, value); }, value);       \
    }                                                                                              \
    HRESULT Toupcam_get_##name(HToupcam h, int* value) {                                           \
        return onCamera(                                                                           \
            __func__, h, [&](PSimSession& s) { return s.settings().number(which, value); },        \
            out(value));                                                                           \
    }

NUMBER(Hue, PSimNumber::Hue)
NUMBER(Saturation, PSimNumber::Saturation)
NUMBER(Brightness, PSimNumber::Brightness)
NUMBER(Contrast, PSimNumber::Contrast)
NUMBER(Gamma, PSimNumber::Gamma)
NUMBER(Chrome, PSimNumber::Chrome)
NUMBER(VFlip, PSimNumber::VFlip)
NUMBER(HFlip, PSimNumber::HFlip)
NUMBER(Negative, PSimNumber::Negative)
NUMBER(HZ, PSimNumber::LightFrequency)

HRESULT Toupcam_put_TempTint(HToupcam h, int nTemp, int nTint) {
    return changing(
        __func__, h, [&](PSimSettings& s) { return s.setTempTint(nTemp, nTint); }, nTemp, nTint);
}

HRESULT Toupcam_get_TempTint(HToupcam h, int* nTemp, int* nTint) {
    return onCamera(
        __func__, h, [&](PSimSession& s) { return s.settings().tempTint(nTemp, nTint); },
        out(nTemp), out(nTint));
}

HRESULT Toupcam_AwbOnePush(HToupcam h, PITOUPCAM_TEMPTINT_CALLBACK fnTTProc, void* ctxTT) {
    return onCamera(
        __func__, h, [&](PSimSession& s) { return s.balanceOnce(fnTTProc, ctxTT); },
        function(fnTTProc), context(ctxTT));
}
