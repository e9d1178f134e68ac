// SPDX-License-Identifier: MIT
#include <toupcam/trace/record/PTraceCall.h>

#include <toupcam/trace/format/PTraceRecords.h>
#include <toupcam/trace/record/PTraceCallbacks.h>

#include <algorithm>

namespace {

/// A call that registers a callback for a camera.
template <typename Function>
HRESULT forwardRegistration(HRESULT (*function)(HToupcam, Function, void*), const char* name,
                            const char* names, HToupcam handle, Function callback, void* context) {
    const PTraceCall::Lines lines(PTraceCall::Kind::Call, name, [&] {
        return PTraceArguments::in(names, PTraceCall::nameHandle(handle), callback, context);
    });
    const auto wrapped = PTraceCallbacks::wrap(handle, callback, context);
    const HRESULT result =
        function == nullptr ? E_NOTIMPL : function(handle, wrapped.function, wrapped.context);
    lines.end([] { return QJsonObject(); }, [&] { return PTraceText::fromResult(result); });
    return result;
}

QJsonObject describePull(HToupcam handle, const void* pixels, int bits,
                         const ToupcamFrameInfoV2* info) {
    PTraceRecorder& recorder = PTraceRecorder::instance();
    QJsonObject out;
    if (info == nullptr)
        return out;
    out.insert(u"pInfo"_qs, PTraceRecords::fromInfo(*info));
    if (pixels == nullptr)
        recorder.announceFrame(handle, *info);
    else
        out.insert(u"pImageData"_qs,
                   recorder.describeFrame(pixels, recorder.pulledBytes(handle, *info, bits)));
    return out;
}

} // namespace

unsigned PTraceCall::forward(unsigned (*function)(ToupcamDeviceV2*), const char* name,
                             const char* names, ToupcamDeviceV2* devices) {
    const Lines lines(Kind::Call, name, [&] { return PTraceArguments::in(names, devices); });
    const unsigned count = function == nullptr ? 0 : function(devices);
    const unsigned filled = devices == nullptr ? 0 : std::min(count, unsigned(TOUPCAM_MAX));
    lines.end(
        [&] {
            return QJsonObject{{u"pti"_qs, PTraceRecords::fromDevices(devices, filled)}};
        },
        [&] { return QJsonValue(qint64(count)); });
    return count;
}

void PTraceCall::forward(void (*function)(PTOUPCAM_HOTPLUG, void*), const char* name,
                         const char* names, PTOUPCAM_HOTPLUG callback, void* context) {
    const Lines lines(Kind::Call, name,
                      [&] { return PTraceArguments::in(names, callback, context); });
    const auto wrapped = PTraceCallbacks::wrap(callback, context);
    if (function != nullptr)
        function(wrapped.function, wrapped.context);
    lines.end();
}

HToupcam PTraceCall::forward(HToupcam (*function)(const char*), const char* name, const char* names,
                             const char* id) {
    const Lines lines(Kind::Call, name, [&] { return PTraceArguments::in(names, id); });
    HToupcam const handle = function == nullptr ? nullptr : function(id);
    int number = 0;
    attempt([&] { number = PTraceRecorder::instance().addHandle(handle); });
    lines.end([] { return QJsonObject(); }, [&] { return PTraceText::fromHandle(number); });
    return handle;
}

void PTraceCall::forward(void (*function)(HToupcam), const char* name, const char* names,
                         HToupcam handle) {
    const Lines lines(Kind::Call, name,
                      [&] { return PTraceArguments::in(names, nameHandle(handle)); });
    if (function != nullptr)
        function(handle);
    lines.end();
}

HRESULT PTraceCall::forward(HRESULT (*function)(HToupcam, PTOUPCAM_DATA_CALLBACK, void*),
                            const char* name, const char* names, HToupcam handle,
                            PTOUPCAM_DATA_CALLBACK callback, void* context) {
    return forwardRegistration(function, name, names, handle, callback, context);
}

HRESULT PTraceCall::forward(HRESULT (*function)(HToupcam, PTOUPCAM_EVENT_CALLBACK, void*),
                            const char* name, const char* names, HToupcam handle,
                            PTOUPCAM_EVENT_CALLBACK callback, void* context) {
    return forwardRegistration(function, name, names, handle, callback, context);
}

HRESULT PTraceCall::forward(HRESULT (*function)(HToupcam, PITOUPCAM_EXPOSURE_CALLBACK, void*),
                            const char* name, const char* names, HToupcam handle,
                            PITOUPCAM_EXPOSURE_CALLBACK callback, void* context) {
    return forwardRegistration(function, name, names, handle, callback, context);
}

HRESULT PTraceCall::forward(HRESULT (*function)(HToupcam, PITOUPCAM_TEMPTINT_CALLBACK, void*),
                            const char* name, const char* names, HToupcam handle,
                            PITOUPCAM_TEMPTINT_CALLBACK callback, void* context) {
    return forwardRegistration(function, name, names, handle, callback, context);
}

HRESULT PTraceCall::forward(HRESULT (*function)(HToupcam, void*, int, ToupcamFrameInfoV2*),
                            const char* name, const char* names, HToupcam handle, void* pixels,
                            int bits, ToupcamFrameInfoV2* info) {
    const Lines lines(Kind::Call, name, [&] {
        return PTraceArguments::in(names, nameHandle(handle), pixels, bits, info);
    });
    const HRESULT result = function == nullptr ? E_NOTIMPL : function(handle, pixels, bits, info);
    lines.end(
        [&] {
            return SUCCEEDED(result) ? describePull(handle, pixels, bits, info) : QJsonObject();
        },
        [&] { return PTraceText::fromResult(result); });
    return result;
}
