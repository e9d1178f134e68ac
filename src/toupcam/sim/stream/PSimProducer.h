// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/stream/PSimFrameFeedback.h>
#include <toupcam/sim/stream/PSimStreamSchedule.h>

#include <atomic>
#include <memory>

/// The work of a stream's producing thread: takes the frames and stills of the schedule and passes
/// them to a delivery. It holds no lock while it works, so callbacks may call any SDK function.
class PSimProducer {
public:
    PSimProducer(std::shared_ptr<PSimCameraLink> link, std::shared_ptr<PSimSettings> settings,
                 PSimStreamSchedule& schedule, PSimFrameFeedback& feedback);

    /// Runs until the schedule ends; the calling thread is the producing thread.
    void run(PSimDelivery& delivery);
    /// Whether the producing thread is between two frames, in the observer. Any thread.
    bool isObserving() const { return m_observing; }

private:
    void prepare();
    void perform(PSimStreamSchedule::Loss& loss, PSimDelivery& delivery);
    void perform(PSimStreamSchedule::Job& job, PSimDelivery& delivery);
    void perform(const PSimStreamSchedule::Still& still, PSimDelivery& delivery);
    void perform(const PSimStreamSchedule::Frame& frame, PSimDelivery& delivery);
    void deliverFrame(const PSimStreamSchedule::Frame& frame, PSimDelivery& delivery);
    bool take(const PSimShot& shot, std::uint64_t number, PSimPicture& picture);
    void reportLostPicture();
    void finish();

    const std::shared_ptr<PSimCameraLink> m_link;
    const std::shared_ptr<PSimSettings> m_settings;
    PSimStreamSchedule& m_schedule;
    PSimFrameFeedback& m_feedback;
    PSimPicture m_live; // the producing thread's, as m_still
    PSimPicture m_still;
    bool m_lacksMemory = false;           // of a picture of this stream; the producing thread's
    std::atomic<bool> m_observing{false}; // atomic: the event thread of pull mode may read it
};
