// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/sensor/PSimImageSource.h>
#include <toupcam/sim/settings/PSimSettings.h>
#include <toupcam/sim/stream/PSimDelivery.h>
#include <toupcam/sim/stream/PSimOnePush.h>
#include <toupcam/sim/timing/PSimShutter.h>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

/// Told of every frame a camera takes, on the camera's producing thread; `taken` counts those of
/// one camera, from 1, over all its streams, without those that fell due while the client was busy.
class PSimFrameObserver {
public:
    virtual ~PSimFrameObserver() = default;
    /// Before a frame is delivered; false has it get lost in the camera. `triggered` counts
    /// triggered frames in the same way; 0 for any other.
    virtual bool frameTaken(std::uint64_t taken, std::uint64_t triggered) = 0;
    /// After it has been delivered or lost.
    virtual void frameDone(std::uint64_t taken) = 0;
};

/// What a stream and its camera share for longer than one session.
struct PSimCameraLink {
    std::shared_ptr<PSimImageSource> lens;
    std::shared_ptr<PSimFrameObserver> observer;
    std::atomic<bool> held{false};       ///< frames are produced but never arrive
    std::atomic<std::uint64_t> taken{0}; ///< for the observer
    std::atomic<std::uint64_t> triggered{0};
    PSimExternalTriggerSpec externalTrigger;
    std::shared_ptr<PSimThermal> thermal;
};

/// Frames of one stream: produced by the camera, and of those handed to the client.
struct PSimFrameCounts {
    std::uint64_t produced = 0;
    std::uint64_t delivered = 0;
};

/// The stream of one session: a producing thread that takes frames at the camera's rate and hands
/// them to a delivery. Callable from any thread; callbacks of the client run without any lock held.
class PSimStream : public std::enable_shared_from_this<PSimStream> {
public:
    PSimStream(std::shared_ptr<PSimCameraLink> link, std::shared_ptr<PSimSettings> settings);
    ~PSimStream();
    PSimStream(const PSimStream&) = delete;
    PSimStream& operator=(const PSimStream&) = delete;

    /// Starts; E_UNEXPECTED if it runs already.
    HRESULT start(std::shared_ptr<PSimDelivery> delivery);
    /// Stops and waits for callbacks in progress; E_WRONG_THREAD from inside one.
    HRESULT stop();
    /// Stops for good; from inside a callback it does not wait, the threads end by themselves.
    void close();

    /// Asks for a still picture; E_UNEXPECTED if the stream does not run, E_PENDING if too many
    /// wait.
    HRESULT snap(unsigned resolution);
    HRESULT pull(bool still, void* buffer, int bits, ToupcamFrameInfoV2* info);
    void setExposureCallback(PITOUPCAM_EXPOSURE_CALLBACK callback, void* context);
    /// Asks for one-push white balance, told by the callback (which may be null) on the producing
    /// thread; E_UNEXPECTED if the stream does not run.
    HRESULT balanceOnce(PITOUPCAM_TEMPTINT_CALLBACK callback, void* context);
    /// Software trigger: this many frames in place of those still to come, 0xffff without end, 0
    /// none; E_UNEXPECTED, but not for 0, unless the stream runs in software-trigger mode.
    HRESULT trigger(unsigned short count);
    /// A signal at the external trigger input; false if no exposure begins.
    bool signal();
    /// Signals that came while the camera was exposing, since the stream or the mode began.
    std::uint64_t missedSignals() const;
    /// Settings changed: the time the next frame falls due may have, too.
    void settingsChanged();

    /// The camera was unplugged: tells the client once, then calls `afterwards` on a thread of the
    /// stream. False, and nothing is called, if the stream does not run.
    bool reportLoss(std::function<void()> afterwards);
    /// Pushes a buffer between two frames and waits until the callback has returned.
    bool pushRaw(const void* data, const BITMAPINFOHEADER* header, int isSnapshot);
    /// Tells an event; waits until the callback has returned unless called on a stream's thread.
    bool fireEvent(unsigned code);
    PSimFrameCounts counts() const;

private:
    struct Job {
        std::function<bool()> work;
        bool done = false;
        bool result = false;
    };
    using Lock = std::unique_lock<std::mutex>;

    void wake();
    void run();
    void waitForWork(Lock& lock);
    bool hasWork();
    bool isFrameDue(PSimShutter::Time now);
    bool isFree() const;
    void tellLoss(Lock& lock);
    void runJob(Lock& lock);
    void takeStill(Lock& lock, PSimPicture& picture);
    void takeFrame(Lock& lock, PSimPicture& picture);
    bool countFrame();
    void deliverFrame(Lock& lock, PSimPicture& picture);
    void adaptExposure(double mean);
    void balanceWhite(const PSimMeans& means);
    void finish(Lock& lock);
    std::shared_ptr<PSimDelivery> delivery() const;

    const std::shared_ptr<PSimCameraLink> m_link;
    const std::shared_ptr<PSimSettings> m_settings;

    std::mutex m_control; // serialises start and stop; never taken on the stream's own threads
    mutable std::mutex m_mutex;        // guards all below
    std::condition_variable m_wake;    // for the producing thread
    std::condition_variable m_jobDone; // for those who wait for a job
    std::shared_ptr<PSimDelivery> m_delivery;
    bool m_active = false; ///< the producing thread takes work
    bool m_stopping = false;
    bool m_closed = false;
    bool m_lost = false;
    bool m_observing = false; ///< the producing thread is between two frames, in the observer
    std::function<void()> m_afterLoss;
    std::deque<unsigned> m_stills;
    std::deque<std::shared_ptr<Job>> m_jobs;
    PSimShutter m_shutter;
    std::uint64_t m_delivered = 0;
    PITOUPCAM_EXPOSURE_CALLBACK m_exposureCallback = nullptr;
    void* m_exposureContext = nullptr;
    PSimOnePush m_onePush;
    std::thread m_thread;
};
