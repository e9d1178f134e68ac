// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/settings/PSimSettings.h>
#include <toupcam/sim/stream/PSimCameraLink.h>
#include <toupcam/sim/stream/PSimDelivery.h>
#include <toupcam/sim/timing/PSimShutter.h>

#include <condition_variable>
#include <deque>
#include <functional>
#include <future>
#include <mutex>
#include <optional>
#include <variant>

/// The numbers of frames of one stream: produced by the camera, and delivered to the client.
struct PSimFrameCounts {
    std::uint64_t produced = 0;
    std::uint64_t delivered = 0;
};

/// The pending work of a stream: callers' requests and due frames, which the producing thread takes
/// one by one and does without the lock. Callable from any thread, except next(), deliver() and
/// end(), which belong to the producing thread.
class PSimStreamSchedule {
public:
    /// A live frame to take; counted as produced.
    struct Frame {
        std::uint64_t number = 0; ///< from 0, lost ones included
        std::uint64_t microseconds = 0;
        bool triggered = false;
    };
    /// A still to take.
    struct Still {
        unsigned resolution = 0;
        std::uint64_t number = 0; ///< of the live frame that comes next
        std::uint64_t microseconds = 0;
    };
    /// A function to call between two frames.
    struct Job {
        std::function<bool()> work;
        std::promise<bool> result;
    };
    /// The loss of the camera to report, followed by `afterwards`.
    struct Loss {
        std::function<void()> afterwards;
    };
    using Work = std::variant<Loss, Job, Still, Frame>;

    PSimStreamSchedule(std::shared_ptr<PSimCameraLink> link,
                       std::shared_ptr<PSimSettings> settings);

    /// A stream begins; unpaced frames are due when `delivery` is ready for them.
    void begin(std::shared_ptr<const PSimDelivery> delivery);
    /// Waits for the next piece of work and returns it; none if the stream must end.
    std::optional<Work> next();
    /// Counts a frame as delivered; false if the stream was stopped or lost while it was made.
    bool deliver();
    /// The stream has ended: cancels waiting jobs. Returns the function that was to follow a loss
    /// that could no longer be reported, or nothing.
    std::function<void()> end();

    /// Makes the producing thread stop after the work in progress.
    void requestStop();
    /// Checks for work again, for example because the delivery has become ready.
    void wake();
    /// To be called when settings have changed: the time at which the next frame falls due may have
    /// changed too.
    void settingsChanged();
    /// Whether work can be requested.
    bool isOpen() const;

    /// Requests a still; E_UNEXPECTED if no stream runs, E_PENDING if too many wait.
    HRESULT requestStill(unsigned resolution);
    /// Calls `work` on the producing thread between two frames and waits for its result; false if
    /// it was never called. Not from the producing thread.
    bool runBetweenFrames(std::function<bool()> work);
    /// See PSimStream::trigger.
    HRESULT trigger(unsigned short count);
    /// See PSimStream::signal.
    bool signal();
    /// See PSimStream::missedSignals.
    std::uint64_t missedSignals() const;
    /// From here on only the loss is reported, and no more frames. False if no stream runs or the
    /// loss was reported before.
    bool requestLoss(std::function<void()> afterwards);
    /// Of the newest stream, running or not.
    PSimFrameCounts counts() const;

private:
    using Time = PSimShutter::Time;

    std::optional<Work> takeWork();
    std::optional<Frame> takeFrame();
    Still takeStill();
    bool hasWork();
    bool isFrameDue(Time now);
    bool isFree() const;
    std::optional<Time> nextTime() const;

    const std::shared_ptr<PSimCameraLink> m_link;
    const std::shared_ptr<PSimSettings> m_settings;

    mutable std::mutex m_mutex;     // guards all below; no callback of the client runs under it
    std::condition_variable m_wake; // for the producing thread
    std::shared_ptr<const PSimDelivery> m_delivery;
    bool m_active = false; ///< the producing thread takes work
    bool m_stopping = false;
    bool m_lost = false;
    std::function<void()> m_afterLoss;
    std::deque<unsigned> m_stills;
    std::deque<Job> m_jobs;
    PSimShutter m_shutter;
    std::uint64_t m_delivered = 0;
};
