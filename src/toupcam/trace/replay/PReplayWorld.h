// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/trace/format/PTraceRecords.h>
#include <toupcam/trace/replay/PReplayAnswers.h>
#include <toupcam/trace/replay/PReplayClient.h>
#include <toupcam/trace/replay/PReplayFrames.h>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>

/// The cameras of a recording. Calls are answered on the threads that make them; one thread of its
/// own runs the callbacks, in the recorded order: each after all changes that were recorded before
/// it, and not earlier than in the recording. Any thread, but for load().
class PReplayWorld {
public:
    /// The one of the process, which is never destroyed: its thread may outlive `main()`.
    static PReplayWorld& instance();

    /// Reads the recording, once in a process. Throws a PReplayError if it is not as expected.
    void load(const QString& path);
    bool isLoaded() const { return m_answers != nullptr; }
    const QJsonObject& header() const { return m_recording.header; }

    /// The numbers of handles, and handles by their numbers; 0 is null.
    int toNumber(HToupcam handle) const;
    HToupcam toHandle(int number);

    /// Changes what the client has registered, when the call is answered.
    using Changed = std::function<void(const PReplayCall&, PReplayClient&)>;
    /// The recorded call that answers this one; null: none, and `changed` is not called.
    const PReplayCall* answer(const char* name, int handle, const QJsonObject& in,
                              const Changed& changed = {});
    /// Likewise for a call that ends callbacks: those that ran before it did in the recording, run
    /// before it here too. `changed` is called then. Waits for a callback in progress.
    const PReplayCall* answerEnd(const char* name, int handle, const QJsonObject& in,
                                 const Changed& changed);

    /// Keeps what the client may point to until the program ends.
    void keep(std::unique_ptr<PTraceRecords::Devices> devices);

    /// Copies the pixels of a recorded frame.
    void copyPixels(const PReplayPixels& pixels, void* data);

    /// How the replay went, once the client has made its last call.
    struct Report {
        quint64 calls = 0;
        QStringList divergences;
        QString notice; ///< about the files; empty: nothing
    };
    /// The report, with the recorded calls that were not made.
    Report report();

private:
    using Clock = std::chrono::steady_clock;

    PReplayWorld() = default;
    const PReplayCall* take(const char* name, int handle, const QJsonObject& in);
    void startDelivery();
    void deliverAll();
    void waitUntilDue(std::unique_lock<std::mutex>& lock, const PReplayCallback& callback);
    void deliver(std::unique_lock<std::mutex>& lock, const PReplayCallback& callback);
    void waitForCallbacks(std::unique_lock<std::mutex>& lock, const PReplayCall& end);
    bool isDelivering(int handle) const;

    PReplayRecording m_recording;
    PReplayFrames m_frames;

    mutable std::mutex m_mutex; // guards all below: the delivery, and every thread that calls
    std::condition_variable m_changed;
    std::unique_ptr<PReplayAnswers> m_answers;
    PReplayClient m_client;
    std::deque<Toupcam_t> m_handles;
    std::vector<std::unique_ptr<PTraceRecords::Devices>> m_devices;
    std::map<int, HToupcam> m_handleByNumber;
    Clock::time_point m_lastTime; ///< of the last change or callback
    qint64 m_lastAt = 0;          ///< when it was recorded
    int m_hurryUntil = 0;         ///< callbacks before this line do not wait for their time
    std::optional<int> m_delivering;
    std::thread::id m_deliveryThread;
};
