// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/trace/format/PTraceArguments.h>
#include <toupcam/trace/record/PTraceRecorder.h>

/// One call that is recorded and forwarded. Any thread; no exception leaves these functions: what
/// there is no memory for is missing from the trace.
namespace PTraceCall {

using Kind = PTraceRecorder::Kind;

/// Does what may need memory; the client's call must not depend on it.
template <typename Work>
void attempt(const Work& work) noexcept {
    try {
        work();
    } catch (...) {
        // The trace has a gap.
    }
}

/// The two lines of a call or a callback: one now, and one when end() is called.
class Lines {
public:
    /// `makeIn` returns the arguments as JSON.
    template <typename MakeIn>
    Lines(Kind kind, const char* name, const MakeIn& makeIn) noexcept
        : m_kind(kind)
        , m_name(name) {
        attempt([&] {
            m_number = PTraceRecorder::instance().begin(kind, QString::fromLatin1(name), makeIn());
        });
    }
    /// `makeOut` returns what was written through arguments, `makeResult` what is returned.
    template <typename MakeOut, typename MakeResult>
    void end(const MakeOut& makeOut, const MakeResult& makeResult) const noexcept {
        attempt([&] {
            PTraceRecorder::instance().end(m_kind, m_number, QString::fromLatin1(m_name), makeOut(),
                                           makeResult());
        });
    }
    /// The end of what returns nothing.
    void end() const noexcept {
        end([] { return QJsonObject(); }, [] { return QJsonValue(QJsonValue::Undefined); });
    }

private:
    Kind m_kind;
    const char* m_name;
    quint64 m_number = 0;
};

/// Handles by their names in the trace.
inline QJsonValue nameHandle(HToupcam handle) {
    return PTraceText::fromHandle(PTraceRecorder::instance().findHandle(handle));
}

/// A call with numbers, and with numbers and texts that it writes.
template <typename... Parameters>
HRESULT forward(HRESULT (*function)(HToupcam, Parameters...), const char* name, const char* names,
                HToupcam handle, Parameters... arguments) {
    const Lines lines(Kind::Call, name,
                      [&] { return PTraceArguments::in(names, nameHandle(handle), arguments...); });
    const HRESULT result = function == nullptr ? E_NOTIMPL : function(handle, arguments...);
    lines.end([&] { return PTraceArguments::out(names, handle, arguments...); },
              [&] { return PTraceText::fromResult(result); });
    return result;
}

// Calls with other arguments, each as the SDK declares it.
unsigned forward(unsigned (*function)(ToupcamDeviceV2*), const char* name, const char* names,
                 ToupcamDeviceV2* devices);
void forward(void (*function)(PTOUPCAM_HOTPLUG, void*), const char* name, const char* names,
             PTOUPCAM_HOTPLUG callback, void* context);
HToupcam forward(HToupcam (*function)(const char*), const char* name, const char* names,
                 const char* id);
void forward(void (*function)(HToupcam), const char* name, const char* names, HToupcam handle);
HRESULT forward(HRESULT (*function)(HToupcam, PTOUPCAM_DATA_CALLBACK, void*), const char* name,
                const char* names, HToupcam handle, PTOUPCAM_DATA_CALLBACK callback, void* context);
HRESULT forward(HRESULT (*function)(HToupcam, PTOUPCAM_EVENT_CALLBACK, void*), const char* name,
                const char* names, HToupcam handle, PTOUPCAM_EVENT_CALLBACK callback,
                void* context);
HRESULT forward(HRESULT (*function)(HToupcam, PITOUPCAM_EXPOSURE_CALLBACK, void*), const char* name,
                const char* names, HToupcam handle, PITOUPCAM_EXPOSURE_CALLBACK callback,
                void* context);
HRESULT forward(HRESULT (*function)(HToupcam, PITOUPCAM_TEMPTINT_CALLBACK, void*), const char* name,
                const char* names, HToupcam handle, PITOUPCAM_TEMPTINT_CALLBACK callback,
                void* context);
HRESULT forward(HRESULT (*function)(HToupcam, void*, int, ToupcamFrameInfoV2*), const char* name,
                const char* names, HToupcam handle, void* pixels, int bits,
                ToupcamFrameInfoV2* info);

} // namespace PTraceCall
