// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/PNumberedFiles.h>

#include <PCd/PFrameSink.h>

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

/// A frame sink that saves every live frame as a file of a series, on threads of its own.
/// What waits for them is bounded in bytes. Never overwrites a file. Any thread.
class PFrameSaver : public PFrameSink {
public:
    static constexpr std::size_t DefaultByteLimit = std::size_t(2) << 30;

    /// Saves one frame under this path and says how that went. Called on several threads at once.
    using SaveFrame = std::function<PStatus(const QString& path, const PDeviceFrame& frame)>;

    PFrameSaver(PNumberedFiles files, SaveFrame saveFrame,
                std::size_t byteLimit = DefaultByteLimit);
    /// Saves what still waits, then returns.
    ~PFrameSaver() override;

    /// False if too much waits already, or a file could not be saved before.
    bool takeFrame(const PDeviceFrame& frame, Kind kind) override;

    /// Waits until nothing is left to save, at most this long. True if nothing is.
    bool waitUntilIdle(std::chrono::milliseconds atMost);

    /// What has become of the frames so far.
    struct State {
        quint64 saved = 0;
        quint64 waiting = 0; ///< or being written
        quint64 unsaved = 0; ///< refused, or dropped after a failure
        QString error;       ///< why the first failed save failed; nothing is saved after it
    };
    State state() const;

private:
    struct Job {
        quint64 number = 0;
        PDeviceFrame frame;
    };

    void saveFrames();
    QString trySave(const Job& job) const;
    void finish(const Job& job, const QString& error);
    void giveUp(const QString& error);

    const PNumberedFiles m_files;
    const SaveFrame m_saveFrame;
    const std::size_t m_byteLimit;

    mutable std::mutex m_mutex; // guards all below but m_writers
    std::condition_variable m_work;
    std::condition_variable m_idle;
    std::deque<Job> m_jobs;
    std::size_t m_bytes = 0; ///< waiting or being written
    quint64 m_lastNumber = 0;
    State m_state;
    bool m_closing = false;
    std::vector<std::thread> m_writers;
};
