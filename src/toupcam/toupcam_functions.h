// SPDX-License-Identifier: MIT
/// @file
/// The functions of toupcam.h as a list, for libraries that define all of them in the same way. A
/// source that includes it defines FORWARD(result, failure, name, parameters, arguments) first,
/// where `failure` is what a function returns if it cannot be carried out. The same on any thread.
/// There is no include guard: the list is a part of the source. FORWARD is undefined after it.

#ifndef FORWARD
#error "define FORWARD(result, failure, name, parameters, arguments) before this list"
#endif

// NOLINTBEGIN(misc-definitions-in-headers): it is a part of a source.
FORWARD(unsigned, 0, Toupcam_EnumV2, (ToupcamDeviceV2 pti[TOUPCAM_MAX]), (pti))
FORWARD(void, void(), Toupcam_HotPlug, (PTOUPCAM_HOTPLUG funcHotPlug, void* ctxHotPlug),
        (funcHotPlug, ctxHotPlug))
FORWARD(HToupcam, nullptr, Toupcam_Open, (const char* camId), (camId))
FORWARD(void, void(), Toupcam_Close, (HToupcam h), (h))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_get_SerialNumber, (HToupcam h, char sn[32]), (h, sn))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_StartPushMode,
        (HToupcam h, PTOUPCAM_DATA_CALLBACK funcData, void* ctxData), (h, funcData, ctxData))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_StartPullModeWithCallback,
        (HToupcam h, PTOUPCAM_EVENT_CALLBACK funcEvent, void* ctxEvent), (h, funcEvent, ctxEvent))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_Stop, (HToupcam h), (h))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_Snap, (HToupcam h, unsigned nResolutionIndex),
        (h, nResolutionIndex))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_Trigger, (HToupcam h, unsigned short nNumber), (h, nNumber))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_PullImageV2,
        (HToupcam h, void* pImageData, int bits, ToupcamFrameInfoV2* pInfo),
        (h, pImageData, bits, pInfo))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_PullStillImageV2,
        (HToupcam h, void* pImageData, int bits, ToupcamFrameInfoV2* pInfo),
        (h, pImageData, bits, pInfo))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_get_ResolutionNumber, (HToupcam h), (h))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_get_Resolution,
        (HToupcam h, unsigned nResolutionIndex, int* pWidth, int* pHeight),
        (h, nResolutionIndex, pWidth, pHeight))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_put_eSize, (HToupcam h, unsigned nResolutionIndex),
        (h, nResolutionIndex))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_get_eSize, (HToupcam h, unsigned* pnResolutionIndex),
        (h, pnResolutionIndex))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_get_FinalSize, (HToupcam h, int* pWidth, int* pHeight),
        (h, pWidth, pHeight))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_put_Roi,
        (HToupcam h, unsigned xOffset, unsigned yOffset, unsigned xWidth, unsigned yHeight),
        (h, xOffset, yOffset, xWidth, yHeight))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_get_Roi,
        (HToupcam h, unsigned* pxOffset, unsigned* pyOffset, unsigned* pxWidth, unsigned* pyHeight),
        (h, pxOffset, pyOffset, pxWidth, pyHeight))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_put_Option, (HToupcam h, unsigned iOption, int iValue),
        (h, iOption, iValue))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_get_Option, (HToupcam h, unsigned iOption, int* piValue),
        (h, iOption, piValue))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_put_RealTime, (HToupcam h, int val), (h, val))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_get_MaxSpeed, (HToupcam h), (h))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_put_Speed, (HToupcam h, unsigned short nSpeed), (h, nSpeed))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_get_Speed, (HToupcam h, unsigned short* pSpeed), (h, pSpeed))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_put_ExpoCallback,
        (HToupcam h, PITOUPCAM_EXPOSURE_CALLBACK fnExpo, void* ctxExpo), (h, fnExpo, ctxExpo))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_get_AutoExpoEnable, (HToupcam h, int* bAutoExposure),
        (h, bAutoExposure))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_put_AutoExpoEnable, (HToupcam h, int bAutoExposure),
        (h, bAutoExposure))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_get_AutoExpoTarget, (HToupcam h, unsigned short* Target),
        (h, Target))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_put_AutoExpoTarget, (HToupcam h, unsigned short Target),
        (h, Target))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_get_ExpoTime, (HToupcam h, unsigned* Time), (h, Time))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_put_ExpoTime, (HToupcam h, unsigned Time), (h, Time))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_get_ExpTimeRange,
        (HToupcam h, unsigned* nMin, unsigned* nMax, unsigned* nDef), (h, nMin, nMax, nDef))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_get_ExpoAGain, (HToupcam h, unsigned short* Gain), (h, Gain))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_put_ExpoAGain, (HToupcam h, unsigned short Gain), (h, Gain))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_get_ExpoAGainRange,
        (HToupcam h, unsigned short* nMin, unsigned short* nMax, unsigned short* nDef),
        (h, nMin, nMax, nDef))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_AwbOnePush,
        (HToupcam h, PITOUPCAM_TEMPTINT_CALLBACK fnTTProc, void* ctxTT), (h, fnTTProc, ctxTT))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_put_TempTint, (HToupcam h, int nTemp, int nTint),
        (h, nTemp, nTint))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_get_TempTint, (HToupcam h, int* nTemp, int* nTint),
        (h, nTemp, nTint))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_put_Hue, (HToupcam h, int Hue), (h, Hue))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_get_Hue, (HToupcam h, int* Hue), (h, Hue))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_put_Saturation, (HToupcam h, int Saturation), (h, Saturation))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_get_Saturation, (HToupcam h, int* Saturation), (h, Saturation))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_put_Brightness, (HToupcam h, int Brightness), (h, Brightness))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_get_Brightness, (HToupcam h, int* Brightness), (h, Brightness))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_put_Contrast, (HToupcam h, int Contrast), (h, Contrast))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_get_Contrast, (HToupcam h, int* Contrast), (h, Contrast))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_put_Gamma, (HToupcam h, int Gamma), (h, Gamma))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_get_Gamma, (HToupcam h, int* Gamma), (h, Gamma))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_put_Chrome, (HToupcam h, int bChrome), (h, bChrome))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_get_Chrome, (HToupcam h, int* bChrome), (h, bChrome))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_put_VFlip, (HToupcam h, int bVFlip), (h, bVFlip))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_get_VFlip, (HToupcam h, int* bVFlip), (h, bVFlip))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_put_HFlip, (HToupcam h, int bHFlip), (h, bHFlip))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_get_HFlip, (HToupcam h, int* bHFlip), (h, bHFlip))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_put_Negative, (HToupcam h, int bNegative), (h, bNegative))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_get_Negative, (HToupcam h, int* bNegative), (h, bNegative))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_put_HZ, (HToupcam h, int nHZ), (h, nHZ))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_get_HZ, (HToupcam h, int* nHZ), (h, nHZ))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_get_FanMaxSpeed, (HToupcam h), (h))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_put_Temperature, (HToupcam h, short nTemperature),
        (h, nTemperature))
FORWARD(HRESULT, E_NOTIMPL, Toupcam_get_Temperature, (HToupcam h, short* pTemperature),
        (h, pTemperature))
// NOLINTEND(misc-definitions-in-headers)

#undef FORWARD
