// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/trace/record/PTraceFile.h>

#include <toupcam/toupcam.h>

#include <chrono>
#include <map>
#include <optional>

/// The recording of this process: the library that calls are forwarded to, and the lines about
/// them. Any thread, but for start().
class PTraceRecorder {
public:
    /// The one of the process, which is never destroyed: the SDK's threads may outlive `main()`.
    static PTraceRecorder& instance();

    /// Loads the library and creates the file. Returns the reason if one of them fails.
    QString start(const QByteArray& library, const QByteArray& file, const QJsonObject& header,
                  bool wholeFrames);
    /// Why the trace is not complete; empty if it is.
    QString failure() const { return m_file.failure(); }

    /// The library's function of this name, or null.
    void* find(const char* function) const;

    /// What a line describes.
    enum class Kind { Call, Callback };
    /// Writes the line of a call or a callback that begins, and returns its number.
    quint64 begin(Kind kind, const QString& name, const QJsonObject& in);
    /// Writes the line of its end. Nothing for a callback, and for functions that return nothing.
    void end(Kind kind, quint64 number, const QString& name, const QJsonObject& out,
             const QJsonValue& result = QJsonValue::Undefined);

    /// Numbers handles from 1 in the order of their opening.
    int addHandle(HToupcam handle);
    /// The number of a handle; 0 for null, and for one that was never opened.
    int findHandle(HToupcam handle) const;

    /// What a line holds of pixels: size and checksum, and where they are in the file of frames. An
    /// empty object if the size is not known.
    QJsonValue describeFrame(const void* data, std::size_t bytes);

    /// What a pull without a buffer reported last for a handle: the size of the buffer that the
    /// client then made.
    void announceFrame(HToupcam handle, const ToupcamFrameInfoV2& info);
    /// The bytes of a pulled frame; 0 if it is of another size than the one announced.
    std::size_t pulledBytes(HToupcam handle, const ToupcamFrameInfoV2& info, int bits) const;

private:
    PTraceRecorder() = default;
    QJsonObject makeLine(const QString& kind, quint64 number, const QString& name) const;

    void* m_library = nullptr;
    PTraceFile m_file;
    std::chrono::steady_clock::time_point m_start;
    std::atomic<quint64> m_calls{0};
    std::atomic<quint64> m_callbacks{0};

    mutable std::mutex m_mutex; // guards all below: every thread that calls the SDK
    int m_opened = 0;
    std::map<HToupcam, int> m_handles;
    std::map<HToupcam, ToupcamFrameInfoV2> m_announced;
};
