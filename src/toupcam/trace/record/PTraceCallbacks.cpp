// SPDX-License-Identifier: MIT
#include <toupcam/trace/record/PTraceCallbacks.h>

#include <toupcam/trace/format/PTraceFrame.h>
#include <toupcam/trace/format/PTraceRecords.h>
#include <toupcam/trace/record/PTraceCall.h>

#include <deque>
#include <mutex>

using PTraceCall::Kind;
using PTraceCall::Lines;

namespace {

// The client's callback, as the context of the one that is registered instead.
template <typename Function>
struct Client {
    Function function;
    void* context;
    QJsonValue handle;
};

template <typename Function>
Client<Function>* keep(const Client<Function>& client) {
    static std::mutex mutex; // guards the list: any thread may register
    static auto* const all = new std::deque<Client<Function>>;
    const std::lock_guard lock(mutex);
    return &all->emplace_back(client);
}

/// The client's own callback stays registered if there is no memory to wrap it.
template <typename Function>
PTraceCallbacks::Registration<Function>
replace(Function callback, void* context, const QJsonValue& handle, Function recorder) noexcept {
    PTraceCallbacks::Registration<Function> result{callback, context};
    if (callback != nullptr) {
        PTraceCall::attempt([&] {
            result.context = keep(Client<Function>{callback, context, handle});
            result.function = recorder;
        });
    }
    return result;
}

template <typename Function>
const Client<Function>& toClient(void* context) {
    return *static_cast<const Client<Function>*>(context);
}

void recordHotPlug(void* context) {
    const auto& client = toClient<PTOUPCAM_HOTPLUG>(context);
    const Lines lines(Kind::Callback, "hotplug", [] { return QJsonObject(); });
    client.function(client.context);
    lines.end();
}

QJsonObject describePush(const QJsonValue& handle, const void* data, const BITMAPINFOHEADER* header,
                         int isSnapshot) {
    const std::size_t bytes = header == nullptr ? 0 : PTraceFrame::pushedBytes(*header);
    return {{u"h"_qs, handle},
            {u"pData"_qs, PTraceRecorder::instance().describeFrame(data, bytes)},
            {u"pHeader"_qs,
             header == nullptr ? QJsonValue(QJsonValue::Null) : PTraceRecords::fromHeader(*header)},
            {u"bSnap"_qs, isSnapshot}};
}

void recordData(const void* data, const BITMAPINFOHEADER* header, int isSnapshot, void* context) {
    const auto& client = toClient<PTOUPCAM_DATA_CALLBACK>(context);
    const Lines lines(Kind::Callback, "data",
                      [&] { return describePush(client.handle, data, header, isSnapshot); });
    client.function(data, header, isSnapshot, client.context);
    lines.end();
}

void recordEvent(unsigned event, void* context) {
    const auto& client = toClient<PTOUPCAM_EVENT_CALLBACK>(context);
    const Lines lines(Kind::Callback, "event", [&] {
        return QJsonObject{{u"h"_qs, client.handle}, {u"nEvent"_qs, qint64(event)}};
    });
    client.function(event, client.context);
    lines.end();
}

void recordExposure(void* context) {
    const auto& client = toClient<PITOUPCAM_EXPOSURE_CALLBACK>(context);
    const Lines lines(Kind::Callback, "exposure", [&] {
        return QJsonObject{{u"h"_qs, client.handle}};
    });
    client.function(client.context);
    lines.end();
}

void recordTempTint(const int temperature, const int tint, void* context) {
    const auto& client = toClient<PITOUPCAM_TEMPTINT_CALLBACK>(context);
    const Lines lines(Kind::Callback, "temptint", [&] {
        return QJsonObject{
            {u"h"_qs, client.handle}, {u"nTemp"_qs, temperature}, {u"nTint"_qs, tint}};
    });
    client.function(temperature, tint, client.context);
    lines.end();
}

} // namespace

PTraceCallbacks::Registration<PTOUPCAM_HOTPLUG> PTraceCallbacks::wrap(PTOUPCAM_HOTPLUG callback,
                                                                      void* context) noexcept {
    return replace(callback, context, QJsonValue(), &recordHotPlug);
}

PTraceCallbacks::Registration<PTOUPCAM_DATA_CALLBACK>
PTraceCallbacks::wrap(HToupcam handle, PTOUPCAM_DATA_CALLBACK callback, void* context) noexcept {
    return replace(callback, context, PTraceCall::nameHandle(handle), &recordData);
}

PTraceCallbacks::Registration<PTOUPCAM_EVENT_CALLBACK>
PTraceCallbacks::wrap(HToupcam handle, PTOUPCAM_EVENT_CALLBACK callback, void* context) noexcept {
    return replace(callback, context, PTraceCall::nameHandle(handle), &recordEvent);
}

PTraceCallbacks::Registration<PITOUPCAM_EXPOSURE_CALLBACK>
PTraceCallbacks::wrap(HToupcam handle, PITOUPCAM_EXPOSURE_CALLBACK callback,
                      void* context) noexcept {
    return replace(callback, context, PTraceCall::nameHandle(handle), &recordExposure);
}

PTraceCallbacks::Registration<PITOUPCAM_TEMPTINT_CALLBACK>
PTraceCallbacks::wrap(HToupcam handle, PITOUPCAM_TEMPTINT_CALLBACK callback,
                      void* context) noexcept {
    return replace(callback, context, PTraceCall::nameHandle(handle), &recordTempTint);
}
