// SPDX-License-Identifier: MIT
#include <toupcam/trace/record/toupcamtrace.h>

#include <toupcam/trace/record/PTraceCall.h>

#include <QJsonDocument>

namespace {

/// Null for an empty text; else a copy that is valid until the next call on this thread.
const char* kept(const QString& text) {
    thread_local QByteArray copy;
    copy = text.toUtf8();
    return text.isEmpty() ? nullptr : copy.constData();
}

} // namespace

const char* ToupcamTrace_start(const char* library, const char* file, const char* header,
                               int wholeFrames) {
    const char* complaint = "there is no memory for a trace";
    PTraceCall::attempt([&] {
        complaint = kept(PTraceRecorder::instance().start(
            library, file, QJsonDocument::fromJson(header).object(), wholeFrames != 0));
    });
    return complaint;
}

const char* ToupcamTrace_failure(void) {
    const char* failure = nullptr;
    PTraceCall::attempt([&] { failure = kept(PTraceRecorder::instance().failure()); });
    return failure;
}
