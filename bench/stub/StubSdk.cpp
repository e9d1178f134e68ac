// SPDX-License-Identifier: MIT
#include <stub/StubSdk.h>

#include <stub/StubRemote.h>
#include <stub/StubSession.h>

#include <dlfcn.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <mutex>

// What the SDK does with cameras: finding, opening, streaming.

namespace {

constexpr std::array<ToupcamResolution, 3> resolutions{{{5440, 3648}, {2720, 1824}, {1360, 912}}};

const ToupcamModelV2 model{"Stub",
                           TOUPCAM_FLAG_USB30 | TOUPCAM_FLAG_TRIGGER_SOFTWARE,
                           2,
                           unsigned(resolutions.size()),
                           unsigned(resolutions.size()),
                           0,
                           0,
                           2.4F,
                           2.4F,
                           {resolutions[0], resolutions[1], resolutions[2]}};

struct Stream {
    std::mutex mutex; // held during a callback: who stops the stream waits for that
    HToupcam camera = nullptr;
    PTOUPCAM_DATA_CALLBACK callback = nullptr;
    void* context = nullptr;
};

Stream stream;
std::atomic<unsigned> cameraCount{1};

void identify(unsigned index, ToupcamDeviceV2& record) {
    std::snprintf(record.displayname, sizeof record.displayname, "Stub %u", index);
    std::snprintf(record.id, sizeof record.id, "stub%u", index);
    record.model = &model;
}

} // namespace

const char* StubSdk::path() {
    Dl_info library{};
    return dladdr(&model, &library) != 0 ? library.dli_fname : nullptr;
}

void StubSdk::setCameraCount(unsigned count) {
    cameraCount = std::min(count, unsigned(TOUPCAM_MAX));
}

bool StubSdk::push(const void* pixels, const BITMAPINFOHEADER& header) {
    const std::lock_guard lock(stream.mutex);
    if (stream.callback == nullptr)
        return false;
    stream.callback(pixels, &header, 0, stream.context);
    return true;
}

unsigned Toupcam_EnumV2(ToupcamDeviceV2 pti[TOUPCAM_MAX]) {
    const unsigned count = cameraCount;
    for (unsigned i = 0; i < count; ++i)
        identify(i, pti[i]);
    return count;
}

void Toupcam_HotPlug(PTOUPCAM_HOTPLUG, void*) {
}

HToupcam Toupcam_Open(const char*) {
    auto session = std::make_unique<StubSession>();
    session->region = {0, 0, resolutions[0].width, resolutions[0].height};
    return session.release();
}

void Toupcam_Close(HToupcam h) {
    if (h == nullptr)
        return;
    Toupcam_Stop(h);
    delete &StubSession::of(h);
}

HRESULT Toupcam_get_SerialNumber(HToupcam h, char sn[32]) {
    std::snprintf(sn, 32, "%010llx", reinterpret_cast<unsigned long long>(h) & 0xffffffffffULL);
    return S_OK;
}

HRESULT Toupcam_StartPushMode(HToupcam h, PTOUPCAM_DATA_CALLBACK funcData, void* ctxData) {
    {
        const std::lock_guard lock(stream.mutex);
        stream.camera = h;
        stream.callback = funcData;
        stream.context = ctxData;
    }
    StubRemote::begin();
    return S_OK;
}

HRESULT Toupcam_Stop(HToupcam h) {
    const std::lock_guard lock(stream.mutex);
    if (stream.camera == h)
        stream.callback = nullptr;
    return S_OK;
}

HRESULT Toupcam_get_ResolutionNumber(HToupcam) {
    return HRESULT(resolutions.size());
}

HRESULT Toupcam_get_Resolution(HToupcam, unsigned nResolutionIndex, int* pWidth, int* pHeight) {
    if (nResolutionIndex >= resolutions.size())
        return E_INVALIDARG;
    *pWidth = int(resolutions[nResolutionIndex].width);
    *pHeight = int(resolutions[nResolutionIndex].height);
    return S_OK;
}

HRESULT Toupcam_put_eSize(HToupcam h, unsigned nResolutionIndex) {
    if (nResolutionIndex >= resolutions.size())
        return E_INVALIDARG;
    StubSession::of(h).resolution = nResolutionIndex;
    return S_OK;
}

HRESULT Toupcam_get_eSize(HToupcam h, unsigned* pnResolutionIndex) {
    *pnResolutionIndex = StubSession::of(h).resolution;
    return S_OK;
}

HRESULT Toupcam_get_FinalSize(HToupcam h, int* pWidth, int* pHeight) {
    return Toupcam_get_Resolution(h, StubSession::of(h).resolution, pWidth, pHeight);
}
