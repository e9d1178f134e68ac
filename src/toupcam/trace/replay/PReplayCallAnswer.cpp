// SPDX-License-Identifier: MIT
#include <toupcam/trace/replay/PReplayCallAnswer.h>

#include <toupcam/trace/format/PTraceFrame.h>
#include <toupcam/trace/format/PTraceRecords.h>

namespace {

using Camera = PReplayClient::Camera;

/// A call that registers a callback of a camera, if it succeeds.
template <typename Function>
HRESULT replyRegistration(const char* name, const char* names, HToupcam handle, Function callback,
                          void* context,
                          PReplayClient::Registration<Function> Camera::*registration) {
    return PReplayCallAnswer::attempt(E_OUTOFMEMORY, [&] {
        PReplayWorld& world = PReplayWorld::instance();
        const int number = world.toNumber(handle);
        const QJsonObject in =
            PTraceArguments::in(names, PReplayCallAnswer::nameHandle(handle), callback, context);
        return PReplayCallAnswer::toResult(
            world.answer(name, number, in, [&](const PReplayCall& call, PReplayClient& client) {
                if (SUCCEEDED(PReplayCallAnswer::toResult(&call)))
                    client.cameras[number].*registration = {callback, context};
            }));
    });
}

/// A call after which a camera runs no callbacks, or only those that stay registered.
HRESULT replyEnd(const char* name, const char* names, HToupcam handle,
                 const std::function<void(Camera&)>& forget) {
    return PReplayCallAnswer::attempt(E_OUTOFMEMORY, [&] {
        PReplayWorld& world = PReplayWorld::instance();
        const int number = world.toNumber(handle);
        const QJsonObject in = PTraceArguments::in(names, PReplayCallAnswer::nameHandle(handle));
        return PReplayCallAnswer::toResult(
            world.answerEnd(name, number, in, [&](const PReplayCall&, PReplayClient& client) {
                forget(client.cameras[number]);
            }));
    });
}

/// The bytes of a pulled frame, if it has the size for which the client made its memory.
std::size_t toBytes(const Camera& camera, const ToupcamFrameInfoV2& info, int bits) {
    const bool isAnnounced =
        camera.announced.width == info.width && camera.announced.height == info.height;
    return isAnnounced ? PTraceFrame::pulledBytes(info, bits) : 0;
}

} // namespace

unsigned PReplayCallAnswer::reply(unsigned (*)(ToupcamDeviceV2*), const char* name,
                                  const char* names, ToupcamDeviceV2* devices) {
    return attempt(0U, [&]() -> unsigned {
        PReplayWorld& world = PReplayWorld::instance();
        const PReplayCall* const call = world.answer(name, 0, PTraceArguments::in(names, devices));
        if (call == nullptr)
            return 0;
        auto found = std::make_unique<PTraceRecords::Devices>();
        PTraceRecords::toDevices(call->out.value(u"pti"_qs).toArray(), *found);
        const std::size_t count = devices == nullptr ? 0 : found->devices.size();
        std::copy_n(found->devices.begin(), count, devices);
        world.keep(std::move(found));
        return unsigned(call->result.toInteger());
    });
}

void PReplayCallAnswer::reply(void (*)(PTOUPCAM_HOTPLUG, void*), const char* name,
                              const char* names, PTOUPCAM_HOTPLUG callback, void* context) {
    attempt(0, [&] {
        PReplayWorld::instance().answerEnd(name, 0, PTraceArguments::in(names, callback, context),
                                           [&](const PReplayCall&, PReplayClient& client) {
                                               client.hotPlug = {callback, context};
                                           });
        return 0;
    });
}

HToupcam PReplayCallAnswer::reply(HToupcam (*)(const char*), const char* name, const char* names,
                                  const char* id) {
    return attempt<HToupcam>(nullptr, [&]() -> HToupcam {
        PReplayWorld& world = PReplayWorld::instance();
        const PReplayCall* const call = world.answer(name, 0, PTraceArguments::in(names, id));
        return call == nullptr ? nullptr
                               : world.toHandle(PTraceText::toHandle(call->result).value_or(0));
    });
}

void PReplayCallAnswer::reply(void (*)(HToupcam), const char* name, const char* names,
                              HToupcam handle) {
    replyEnd(name, names, handle, [](Camera& camera) { camera = Camera(); });
}

HRESULT PReplayCallAnswer::reply(HRESULT (*function)(HToupcam), const char* name, const char* names,
                                 HToupcam handle) {
    if (function != &Toupcam_Stop)
        return reply<>(function, name, names, handle);
    return replyEnd(name, names, handle, [](Camera& camera) {
        camera.data = {};
        camera.event = {};
    });
}

HRESULT PReplayCallAnswer::reply(HRESULT (*)(HToupcam, PTOUPCAM_DATA_CALLBACK, void*),
                                 const char* name, const char* names, HToupcam handle,
                                 PTOUPCAM_DATA_CALLBACK callback, void* context) {
    return replyRegistration(name, names, handle, callback, context, &Camera::data);
}

HRESULT PReplayCallAnswer::reply(HRESULT (*)(HToupcam, PTOUPCAM_EVENT_CALLBACK, void*),
                                 const char* name, const char* names, HToupcam handle,
                                 PTOUPCAM_EVENT_CALLBACK callback, void* context) {
    return replyRegistration(name, names, handle, callback, context, &Camera::event);
}

HRESULT PReplayCallAnswer::reply(HRESULT (*)(HToupcam, PITOUPCAM_EXPOSURE_CALLBACK, void*),
                                 const char* name, const char* names, HToupcam handle,
                                 PITOUPCAM_EXPOSURE_CALLBACK callback, void* context) {
    return replyRegistration(name, names, handle, callback, context, &Camera::exposure);
}

HRESULT PReplayCallAnswer::reply(HRESULT (*)(HToupcam, PITOUPCAM_TEMPTINT_CALLBACK, void*),
                                 const char* name, const char* names, HToupcam handle,
                                 PITOUPCAM_TEMPTINT_CALLBACK callback, void* context) {
    return replyRegistration(name, names, handle, callback, context, &Camera::tempTint);
}

HRESULT PReplayCallAnswer::reply(HRESULT (*)(HToupcam, void*, int, ToupcamFrameInfoV2*),
                                 const char* name, const char* names, HToupcam handle, void* pixels,
                                 int bits, ToupcamFrameInfoV2* info) {
    return attempt(E_OUTOFMEMORY, [&] {
        PReplayWorld& world = PReplayWorld::instance();
        const int number = world.toNumber(handle);
        ToupcamFrameInfoV2 recorded{};
        std::size_t bytes = 0;
        const PReplayCall* const call = world.answer(
            name, number, PTraceArguments::in(names, nameHandle(handle), pixels, bits, info),
            [&](const PReplayCall& answer, PReplayClient& client) {
                const QJsonObject out = answer.out.value(u"pInfo"_qs).toObject();
                PTraceRecords::toInfo(out, recorded);
                Camera& camera = client.cameras[number];
                if (pixels == nullptr)
                    camera.announced = recorded;
                bytes = pixels == nullptr ? 0 : toBytes(camera, recorded, bits);
            });
        const HRESULT result = toResult(call);
        if (call == nullptr || FAILED(result))
            return result;
        if (info != nullptr && call->out.contains(u"pInfo"_qs))
            *info = recorded;
        if (bytes > 0 && call->pixels && call->pixels->bytes == bytes)
            world.copyPixels(*call->pixels, pixels);
        return result;
    });
}
