// SPDX-License-Identifier: MIT
#include <stub/StubSession.h>

// What the SDK does with the settings of an opened camera: any value is taken and kept.

#define STUB_SETTING(name, type, member)                                                           \
    HRESULT Toupcam_put_##name(HToupcam h, type value) {                                           \
        StubSession::of(h).member = value;                                                         \
        return S_OK;                                                                               \
    }                                                                                              \
    HRESULT Toupcam_get_##name(HToupcam h, type* value) {                                          \
        *value = StubSession::of(h).member;                                                        \
        return S_OK;                                                                               \
    }

STUB_SETTING(Speed, unsigned short, speed)
STUB_SETTING(AutoExpoEnable, int, autoExpoEnable)
STUB_SETTING(AutoExpoTarget, unsigned short, autoExpoTarget)
STUB_SETTING(ExpoTime, unsigned, expoTime)
STUB_SETTING(ExpoAGain, unsigned short, expoAGain)
STUB_SETTING(Hue, int, hue)
STUB_SETTING(Saturation, int, saturation)
STUB_SETTING(Brightness, int, brightness)
STUB_SETTING(Contrast, int, contrast)
STUB_SETTING(Gamma, int, gamma)
STUB_SETTING(Chrome, int, chrome)
STUB_SETTING(VFlip, int, vFlip)
STUB_SETTING(HFlip, int, hFlip)
STUB_SETTING(Negative, int, negative)
STUB_SETTING(HZ, int, hz)
STUB_SETTING(Temperature, short, temperature)

HRESULT Toupcam_put_TempTint(HToupcam h, int nTemp, int nTint) {
    StubSession::of(h).temp = nTemp;
    StubSession::of(h).tint = nTint;
    return S_OK;
}

HRESULT Toupcam_get_TempTint(HToupcam h, int* nTemp, int* nTint) {
    *nTemp = StubSession::of(h).temp;
    *nTint = StubSession::of(h).tint;
    return S_OK;
}

HRESULT Toupcam_put_Option(HToupcam h, unsigned iOption, int iValue) {
    if (iOption >= StubSession::of(h).options.size())
        return E_INVALIDARG;
    StubSession::of(h).options[iOption] = iValue;
    return S_OK;
}

HRESULT Toupcam_get_Option(HToupcam h, unsigned iOption, int* piValue) {
    if (iOption >= StubSession::of(h).options.size())
        return E_INVALIDARG;
    *piValue = StubSession::of(h).options[iOption];
    return S_OK;
}

HRESULT Toupcam_put_Roi(HToupcam h, unsigned xOffset, unsigned yOffset, unsigned xWidth,
                        unsigned yHeight) {
    StubSession::of(h).region = {xOffset, yOffset, xWidth, yHeight};
    return S_OK;
}

HRESULT Toupcam_get_Roi(HToupcam h, unsigned* pxOffset, unsigned* pyOffset, unsigned* pxWidth,
                        unsigned* pyHeight) {
    const std::array<unsigned, 4>& region = StubSession::of(h).region;
    *pxOffset = region[0];
    *pyOffset = region[1];
    *pxWidth = region[2];
    *pyHeight = region[3];
    return S_OK;
}

HRESULT Toupcam_get_ExpTimeRange(HToupcam, unsigned* nMin, unsigned* nMax, unsigned* nDef) {
    *nMin = 100;
    *nMax = 5000000;
    *nDef = 10000;
    return S_OK;
}

HRESULT Toupcam_get_ExpoAGainRange(HToupcam, unsigned short* nMin, unsigned short* nMax,
                                   unsigned short* nDef) {
    *nMin = 100;
    *nMax = 1000;
    *nDef = 100;
    return S_OK;
}

HRESULT Toupcam_get_MaxSpeed(HToupcam) {
    return 2;
}

HRESULT Toupcam_get_FanMaxSpeed(HToupcam) {
    return 1;
}

HRESULT Toupcam_put_RealTime(HToupcam, int) {
    return S_OK;
}

HRESULT Toupcam_put_ExpoCallback(HToupcam, PITOUPCAM_EXPOSURE_CALLBACK, void*) {
    return S_OK;
}

HRESULT Toupcam_AwbOnePush(HToupcam, PITOUPCAM_TEMPTINT_CALLBACK, void*) {
    return S_OK;
}
