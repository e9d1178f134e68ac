// SPDX-License-Identifier: MIT

// The entry points of the SDK for image processing in the camera.

#include <toupcam/sim/api/PSimCall.h>

using namespace PSimCall;
using namespace PSimArgument;

/// A setter and a getter of one whole number.
#define SCALAR(name, which)                                                                        \
    HRESULT Toupcam_put_##name(HToupcam h, int value) {                                            \
        return changing(                                                                           \
            __func__, h, [&](PSimSettings& s) { return s.setScalar(which, value); }, value);       \
    }                                                                                              \
    HRESULT Toupcam_get_##name(HToupcam h, int* value) {                                           \
        return onCamera(                                                                           \
            __func__, h, [&](PSimSession& s) { return s.settings().scalar(which, value); },        \
            out(value));                                                                           \
    }

SCALAR(Hue, PSimScalar::Hue)
SCALAR(Saturation, PSimScalar::Saturation)
SCALAR(Brightness, PSimScalar::Brightness)
SCALAR(Contrast, PSimScalar::Contrast)
SCALAR(Gamma, PSimScalar::Gamma)
SCALAR(Chrome, PSimScalar::Chrome)
SCALAR(VFlip, PSimScalar::VFlip)
SCALAR(HFlip, PSimScalar::HFlip)
SCALAR(Negative, PSimScalar::Negative)
SCALAR(HZ, PSimScalar::LightFrequency)

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
