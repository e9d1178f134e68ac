// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/stream/PSimProducer.h>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

/// The stream of one session for the client's calls: starts and stops the producing thread
/// (PSimProducer) and passes requests to its schedule. Callable from any thread; callbacks of the
/// client run without any lock held.
class PSimStream : public std::enable_shared_from_this<PSimStream> {
public:
    PSimStream(std::shared_ptr<PSimCameraLink> link, const std::shared_ptr<PSimSettings>& settings);
    ~PSimStream();
    PSimStream(const PSimStream&) = delete;
    PSimStream& operator=(const PSimStream&) = delete;

    /// Starts; E_UNEXPECTED if it is running.
    HRESULT start(const std::shared_ptr<PSimDelivery>& delivery);
    /// Stops and waits for callbacks in progress; E_WRONG_THREAD from inside one.
    HRESULT stop();
    /// Stops for good; from inside a callback it does not wait, and the threads end on their own.
    void close();

    /// Requests a still; E_UNEXPECTED if the stream does not run, E_PENDING if too many
    /// wait.
    HRESULT snap(unsigned resolution) { return m_schedule.requestStill(resolution); }
    /// Copies the newest picture out; E_UNEXPECTED if the stream does not run. See PSimDelivery.
    HRESULT pull(bool still, void* buffer, int bits, ToupcamFrameInfoV2* info);
    /// Sets the function that is called, on the producing thread, when auto-exposure has changed
    /// something.
    void setExposureCallback(PITOUPCAM_EXPOSURE_CALLBACK callback, void* context);
    /// Requests one-push white balance; its callback (which may be null) is called on the producing
    /// thread. E_UNEXPECTED if the stream does not run.
    HRESULT balanceOnce(PITOUPCAM_TEMPTINT_CALLBACK callback, void* context);
    /// Software trigger: replaces the frames still to come by this many, 0xffff meaning without
    /// end, 0 none. E_UNEXPECTED, except for 0, unless the stream runs in software-trigger mode.
    HRESULT trigger(unsigned short count) { return m_schedule.trigger(count); }
    /// A signal at the external trigger input; false if no exposure begins.
    bool signal() { return m_schedule.signal(); }
    /// Signals that arrived while the camera was exposing, since the stream or the mode began.
    std::uint64_t missedSignals() const { return m_schedule.missedSignals(); }
    /// To be called when settings have changed: the time at which the next frame falls due may have
    /// changed too.
    void settingsChanged() { m_schedule.settingsChanged(); }

    /// The camera was unplugged: reports it to the client once, then calls `afterwards` on a thread
    /// of the stream. False, and nothing is called, if the stream does not run.
    bool reportLoss(std::function<void()> afterwards);
    /// Pushes a buffer between two frames and waits until the callback has returned.
    bool pushRaw(const void* data, const BITMAPINFOHEADER* header, int isSnapshot);
    /// Reports an event; waits until the callback has returned unless called on a stream's thread.
    bool fireEvent(unsigned code);
    /// The counts since the stream was last started.
    PSimFrameCounts counts() const { return m_schedule.counts(); }

private:
    void startDelivery(const std::shared_ptr<PSimDelivery>& delivery);
    void startProducer(const std::shared_ptr<PSimDelivery>& delivery);
    std::shared_ptr<PSimDelivery> delivery() const;
    void setDelivery(std::shared_ptr<PSimDelivery> delivery);

    const std::shared_ptr<PSimCameraLink> m_link;
    PSimStreamSchedule m_schedule;
    PSimFrameFeedback m_feedback;
    PSimProducer m_producer;

    std::mutex m_control; // serialises start and stop; never taken on the stream's own threads
    std::thread m_thread; // guarded by m_control
    std::atomic<bool> m_closed{false}; // atomic: set from inside callbacks, without m_control
    mutable std::mutex m_mutex;        // guards m_delivery, for as long as it takes to copy it
    std::shared_ptr<PSimDelivery> m_delivery;
};
