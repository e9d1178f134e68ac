// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/trace/format/PTraceArguments.h>
#include <toupcam/trace/replay/PReplayWorld.h>

#include <algorithm>
#include <cstring>

/// One call that is answered from the recording. Any thread; no exception leaves these functions.
namespace PReplayCallAnswer {

/// Does the work; without memory, the failure is returned.
template <typename Result, typename Work>
Result attempt(Result failure, const Work& work) noexcept {
    try {
        return work();
    } catch (...) {
        return failure;
    }
}

/// Handles by their names in the trace.
inline QJsonValue nameHandle(HToupcam handle) {
    return PTraceText::fromHandle(PReplayWorld::instance().toNumber(handle));
}

/// What a recorded call returned; E_UNEXPECTED for none, and for one that did not return.
inline HRESULT toResult(const PReplayCall* call) {
    return call == nullptr ? E_UNEXPECTED
                           : PTraceText::toResult(call->result).value_or(E_UNEXPECTED);
}

/// Writes a recorded value through an argument, if it is one for that and the value was recorded.
template <typename T>
void write(const QJsonValue& value, const T& argument) {
    using Target = std::remove_pointer_t<T>;
    if constexpr (std::is_same_v<T, char*>) {
        const QByteArray text = PTraceText::toText(value).value_or(QByteArray());
        if (argument != nullptr && !value.isUndefined()) {
            std::memset(argument, 0, PTraceArguments::serialSize);
            std::memcpy(argument, text.constData(),
                        std::min(std::size_t(text.size()), PTraceArguments::serialSize));
        }
    } else if constexpr (std::is_pointer_v<T> && std::is_integral_v<Target> &&
                         !std::is_const_v<Target>) {
        if (argument != nullptr && value.isDouble())
            *argument = Target(value.toInteger());
    }
}

/// A call with numbers, and with numbers and texts that it writes.
template <typename... Parameters>
HRESULT reply(HRESULT (*)(HToupcam, Parameters...), const char* name, const char* names,
              HToupcam handle, Parameters... arguments) {
    return attempt(E_OUTOFMEMORY, [&] {
        PReplayWorld& world = PReplayWorld::instance();
        const PReplayCall* const call =
            world.answer(name, world.toNumber(handle),
                         PTraceArguments::in(names, nameHandle(handle), arguments...));
        const QStringList keys = PTraceArguments::split(names);
        qsizetype index = 1; // the handle is the first
        if (call != nullptr)
            (write(call->out.value(keys.at(index++)), arguments), ...);
        return toResult(call);
    });
}

// Calls with other arguments, each as the SDK declares it. The first argument only says which.
unsigned reply(unsigned (*)(ToupcamDeviceV2*), const char* name, const char* names,
               ToupcamDeviceV2* devices);
void reply(void (*)(PTOUPCAM_HOTPLUG, void*), const char* name, const char* names,
           PTOUPCAM_HOTPLUG callback, void* context);
HToupcam reply(HToupcam (*)(const char*), const char* name, const char* names, const char* id);
void reply(void (*)(HToupcam), const char* name, const char* names, HToupcam handle);
HRESULT reply(HRESULT (*function)(HToupcam), const char* name, const char* names, HToupcam handle);
HRESULT reply(HRESULT (*)(HToupcam, PTOUPCAM_DATA_CALLBACK, void*), const char* name,
              const char* names, HToupcam handle, PTOUPCAM_DATA_CALLBACK callback, void* context);
HRESULT reply(HRESULT (*)(HToupcam, PTOUPCAM_EVENT_CALLBACK, void*), const char* name,
              const char* names, HToupcam handle, PTOUPCAM_EVENT_CALLBACK callback, void* context);
HRESULT reply(HRESULT (*)(HToupcam, PITOUPCAM_EXPOSURE_CALLBACK, void*), const char* name,
              const char* names, HToupcam handle, PITOUPCAM_EXPOSURE_CALLBACK callback,
              void* context);
HRESULT reply(HRESULT (*)(HToupcam, PITOUPCAM_TEMPTINT_CALLBACK, void*), const char* name,
              const char* names, HToupcam handle, PITOUPCAM_TEMPTINT_CALLBACK callback,
              void* context);
HRESULT reply(HRESULT (*)(HToupcam, void*, int, ToupcamFrameInfoV2*), const char* name,
              const char* names, HToupcam handle, void* pixels, int bits, ToupcamFrameInfoV2* info);

} // namespace PReplayCallAnswer
