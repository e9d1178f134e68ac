// SPDX-License-Identifier: MIT

// The entry points of the SDK, one line of work each; what they have in common is in PSimCall.

#include <toupcam/sim/api/PSimCall.h>

#include <QByteArray>
#include <algorithm>
#include <cstring>

using namespace PSimCall;
using namespace PSimArgument;

namespace {

constexpr std::size_t idSize = sizeof(ToupcamDeviceV2::id);
constexpr std::size_t serialSize = 32;

/// What an absurd success of Toupcam_Open returns: not null, and not a handle.
HToupcam neverAHandle() {
    static Toupcam_t nothing{};
    return &nothing;
}

HRESULT give(const PSimSize& size, int* width, int* height) {
    if (!width || !height)
        return E_POINTER;
    *width = int(size.width);
    *height = int(size.height);
    return S_OK;
}

template <typename T, typename Range>
HRESULT give(const Range& range, T* minimum, T* maximum, T* initial) {
    if (!minimum || !maximum || !initial)
        return E_POINTER;
    *minimum = range.minimum;
    *maximum = range.maximum;
    *initial = range.initial;
    return S_OK;
}

// Reports the size given by a fault; 0 x 0 leaves the client's record unchanged.
HRESULT pullMisreported(PSimStream& stream, const PSimSize& size, bool still, void* buffer,
                        int bits, ToupcamFrameInfoV2* info) {
    ToupcamFrameInfoV2 own{};
    const HRESULT result = stream.pull(still, buffer, bits, &own);
    if (result < 0 || !info || size == PSimSize{})
        return result;
    *info = own;
    info->width = size.width;
    info->height = size.height;
    return result;
}

HRESULT pull(const char* function, HToupcam h, bool still, void* buffer, int bits,
             ToupcamFrameInfoV2* info) {
    const auto work = [&](PSimSession& s) {
        const auto size =
            buffer ? PSimWorld::instance().faults().reportedSize(function) : std::nullopt;
        return size ? pullMisreported(s.stream(), *size, still, buffer, bits, info)
                    : s.stream().pull(still, buffer, bits, info);
    };
    return onCamera(function, h, work, PSimArgument::buffer(buffer), bits, out(info));
}

// put_Option and get_Option pass the option, so that a fault can apply to one option only.
template <typename Work, typename Value>
HRESULT onOption(const char* function, HToupcam h, unsigned option, const Work& work,
                 const Value& value) {
    return onHandle(
        function, option, h,
        [&work](PSimSession& s) { return s.isGone() ? E_GEN_FAILURE : work(s); }, option, value);
}

} // namespace

unsigned Toupcam_EnumV2(ToupcamDeviceV2 pti[TOUPCAM_MAX]) {
    std::vector<ToupcamDeviceV2> found;
    bool isAbsurd = false;
    const auto enumerate = [&found] {
        found = PSimWorld::instance().enumerate();
        return HRESULT{TOUPCAM_MAX};
    };
    const HRESULT injected =
        guarded(__func__, std::nullopt, enumerate, [&isAbsurd](HRESULT) { isAbsurd = true; });
    // An injected failure is a number of cameras; more than there are cannot be listed. An absurd
    // success claims to have listed some and has written none.
    const auto most = std::size_t(std::clamp(injected, 0, TOUPCAM_MAX));
    const std::size_t listed = pti ? std::min(most, found.size()) : 0;
    std::copy_n(found.begin(), listed, pti);
    const std::size_t count = isAbsurd ? most : listed;
    record(__func__, std::to_string(count), Named{pti != nullptr, "list"});
    return unsigned(count);
}

void Toupcam_HotPlug(PTOUPCAM_HOTPLUG funcHotPlug, void* ctxHotPlug) {
    guarded(__func__, std::nullopt, [&] {
        PSimWorld::instance().hotPlug().setCallback(funcHotPlug, ctxHotPlug);
        return S_OK;
    });
    record(__func__, std::string(), function(funcHotPlug), context(ctxHotPlug));
}

HToupcam Toupcam_Open(const char* camId) {
    HToupcam handle = nullptr;
    const auto open = [&] {
        if (camId) // an id may fill its field to the last byte, without a NUL
            handle = PSimWorld::instance().open(QByteArray(camId, int(strnlen(camId, idSize))));
        return S_OK;
    };
    guarded(__func__, std::nullopt, open, [&handle](HRESULT) { handle = neverAHandle(); });
    record(__func__, written(handle), Text{camId, idSize});
    return handle;
}

void Toupcam_Close(HToupcam h) {
    guarded(__func__, std::nullopt,
            [h] { return PSimWorld::instance().close(h) ? S_OK : E_INVALIDARG; });
    record(__func__, std::string(), h);
}

HRESULT Toupcam_get_SerialNumber(HToupcam h, char sn[32]) {
    const auto copy = [sn](PSimSession& s) {
        if (!sn)
            return E_POINTER;
        const QByteArray& serial = s.spec().serial;
        std::memset(sn, 0, serialSize);
        std::memcpy(sn, serial.constData(), std::size_t(serial.size()));
        return S_OK;
    };
    return onCamera(__func__, h, copy, TextOut{sn, serialSize});
}

HRESULT Toupcam_StartPushMode(HToupcam h, PTOUPCAM_DATA_CALLBACK funcData, void* ctxData) {
    return onCamera(
        __func__, h, [&](PSimSession& s) { return s.startPush(funcData, ctxData); },
        function(funcData), context(ctxData));
}

HRESULT Toupcam_StartPullModeWithCallback(HToupcam h, PTOUPCAM_EVENT_CALLBACK funcEvent,
                                          void* ctxEvent) {
    return onCamera(
        __func__, h, [&](PSimSession& s) { return s.startPull(funcEvent, ctxEvent); },
        function(funcEvent), context(ctxEvent));
}

HRESULT Toupcam_Stop(HToupcam h) {
    return onHandle(__func__, std::nullopt, h, [](PSimSession& s) { return s.stream().stop(); });
}

HRESULT Toupcam_Snap(HToupcam h, unsigned nResolutionIndex) {
    return onCamera(
        __func__, h, [&](PSimSession& s) { return s.snap(nResolutionIndex); }, nResolutionIndex);
}

HRESULT Toupcam_Trigger(HToupcam h, unsigned short nNumber) {
    return onCamera(
        __func__, h, [nNumber](PSimSession& s) { return s.trigger(nNumber); }, nNumber);
}

HRESULT Toupcam_PullImageV2(HToupcam h, void* pImageData, int bits, ToupcamFrameInfoV2* pInfo) {
    return pull(__func__, h, false, pImageData, bits, pInfo);
}

HRESULT Toupcam_PullStillImageV2(HToupcam h, void* pImageData, int bits,
                                 ToupcamFrameInfoV2* pInfo) {
    return pull(__func__, h, true, pImageData, bits, pInfo);
}

HRESULT Toupcam_get_ResolutionNumber(HToupcam h) {
    return onCamera(__func__, h,
                    [](PSimSession& s) { return HRESULT(s.spec().resolutions.size()); });
}

HRESULT Toupcam_get_Resolution(HToupcam h, unsigned nResolutionIndex, int* pWidth, int* pHeight) {
    const auto read = [&](PSimSession& s) {
        const auto& sizes = s.spec().resolutions;
        return nResolutionIndex < sizes.size()
                   ? give(sizes[nResolutionIndex].size(), pWidth, pHeight)
                   : E_INVALIDARG;
    };
    return onCamera(__func__, h, read, nResolutionIndex, out(pWidth), out(pHeight));
}

HRESULT Toupcam_put_eSize(HToupcam h, unsigned nResolutionIndex) {
    return changing(
        __func__, h, [&](PSimSettings& s) { return s.setResolution(nResolutionIndex); },
        nResolutionIndex);
}

HRESULT Toupcam_get_eSize(HToupcam h, unsigned* pnResolutionIndex) {
    return reading(__func__, h, pnResolutionIndex,
                   [](PSimSession& s) { return s.settings().resolution(); });
}

HRESULT Toupcam_get_FinalSize(HToupcam h, int* pWidth, int* pHeight) {
    return onCamera(
        __func__, h,
        [&](PSimSession& s) { return give(s.settings().finalSize(), pWidth, pHeight); },
        out(pWidth), out(pHeight));
}

HRESULT Toupcam_put_Roi(HToupcam h, unsigned xOffset, unsigned yOffset, unsigned xWidth,
                        unsigned yHeight) {
    return changing(
        __func__, h,
        [&](PSimSettings& s) {
            return s.setRegion({xOffset, yOffset, xWidth, yHeight});
        },
        xOffset, yOffset, xWidth, yHeight);
}

HRESULT Toupcam_get_Roi(HToupcam h, unsigned* pxOffset, unsigned* pyOffset, unsigned* pxWidth,
                        unsigned* pyHeight) {
    const auto read = [&](PSimSession& s) {
        if (!pxOffset || !pyOffset || !pxWidth || !pyHeight)
            return E_POINTER;
        const PSimRegion region = s.settings().region();
        *pxOffset = region.x;
        *pyOffset = region.y;
        *pxWidth = region.width;
        *pyHeight = region.height;
        return S_OK;
    };
    return onCamera(__func__, h, read, out(pxOffset), out(pyOffset), out(pxWidth), out(pyHeight));
}

HRESULT Toupcam_put_Option(HToupcam h, unsigned iOption, int iValue) {
    const auto put = [&](PSimSettings& s) { return s.setOption(iOption, iValue); };
    return onOption(
        __func__, h, iOption, [&put](PSimSession& s) { return s.change(put); }, iValue);
}

HRESULT Toupcam_get_Option(HToupcam h, unsigned iOption, int* piValue) {
    const auto get = [&](PSimSession& s) {
        const HRESULT result = s.settings().option(iOption, piValue);
        const std::optional<int> answer = PSimWorld::instance().faults().replacedOption(iOption);
        if (result < 0 || !answer)
            return result;
        *piValue = *answer;
        return S_OK;
    };
    return onOption(__func__, h, iOption, get, out(piValue));
}

HRESULT Toupcam_put_RealTime(HToupcam h, int val) {
    return changing(
        __func__, h, [&](PSimSettings& s) { return s.setRealTime(val); }, val);
}

HRESULT Toupcam_get_MaxSpeed(HToupcam h) {
    return onCamera(__func__, h, [](PSimSession& s) { return HRESULT(s.spec().speedLevels - 1); });
}

HRESULT Toupcam_put_Speed(HToupcam h, unsigned short nSpeed) {
    return changing(
        __func__, h, [&](PSimSettings& s) { return s.setSpeed(nSpeed); }, nSpeed);
}

HRESULT Toupcam_get_Speed(HToupcam h, unsigned short* pSpeed) {
    return reading(__func__, h, pSpeed, [](PSimSession& s) { return s.settings().speed(); });
}

HRESULT Toupcam_put_ExpoCallback(HToupcam h, PITOUPCAM_EXPOSURE_CALLBACK fnExpo, void* ctxExpo) {
    const auto put = [&](PSimSession& s) {
        s.stream().setExposureCallback(fnExpo, ctxExpo);
        return S_OK;
    };
    return onCamera(__func__, h, put, function(fnExpo), context(ctxExpo));
}

HRESULT Toupcam_get_AutoExpoEnable(HToupcam h, int* bAutoExposure) {
    return reading(__func__, h, bAutoExposure,
                   [](PSimSession& s) { return s.settings().autoExposure(); });
}

HRESULT Toupcam_put_AutoExpoEnable(HToupcam h, int bAutoExposure) {
    return changing(
        __func__, h, [&](PSimSettings& s) { return s.setAutoExposure(bAutoExposure != 0); },
        bAutoExposure);
}

HRESULT Toupcam_get_AutoExpoTarget(HToupcam h, unsigned short* Target) {
    return reading(__func__, h, Target, [](PSimSession& s) { return s.settings().target(); });
}

HRESULT Toupcam_put_AutoExpoTarget(HToupcam h, unsigned short Target) {
    return changing(
        __func__, h, [&](PSimSettings& s) { return s.setTarget(Target); }, Target);
}

HRESULT Toupcam_get_ExpoTime(HToupcam h, unsigned* Time) {
    return reading(__func__, h, Time,
                   [](PSimSession& s) { return s.settings().exposure().microseconds; });
}

HRESULT Toupcam_put_ExpoTime(HToupcam h, unsigned Time) {
    return changing(
        __func__, h, [&](PSimSettings& s) { return s.setExposureTime(Time); }, Time);
}

HRESULT Toupcam_get_ExpTimeRange(HToupcam h, unsigned* nMin, unsigned* nMax, unsigned* nDef) {
    return onCamera(
        __func__, h, [&](PSimSession& s) { return give(s.spec().exposure, nMin, nMax, nDef); },
        out(nMin), out(nMax), out(nDef));
}

HRESULT Toupcam_get_ExpoAGain(HToupcam h, unsigned short* Gain) {
    return reading(__func__, h, Gain,
                   [](PSimSession& s) { return s.settings().exposure().gainPercent; });
}

HRESULT Toupcam_put_ExpoAGain(HToupcam h, unsigned short Gain) {
    return changing(
        __func__, h, [&](PSimSettings& s) { return s.setGain(Gain); }, Gain);
}

HRESULT Toupcam_get_ExpoAGainRange(HToupcam h, unsigned short* nMin, unsigned short* nMax,
                                   unsigned short* nDef) {
    return onCamera(
        __func__, h, [&](PSimSession& s) { return give(s.spec().gain, nMin, nMax, nDef); },
        out(nMin), out(nMax), out(nDef));
}
