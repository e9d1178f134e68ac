// SPDX-License-Identifier: MIT
#include <toupcam/sim/stream/PSimProducer.h>

#include <cstdio>
#include <new>
#include <utility>

namespace {

void setNumber(PSimPicture& picture, std::uint64_t number, std::uint64_t microseconds) {
    picture.sequence = unsigned(number);
    picture.microseconds = microseconds;
}

} // namespace

PSimProducer::PSimProducer(std::shared_ptr<PSimCameraLink> link,
                           std::shared_ptr<PSimSettings> settings, PSimStreamSchedule& schedule,
                           PSimFrameFeedback& feedback)
    : m_link(std::move(link))
    , m_settings(std::move(settings))
    , m_schedule(schedule)
    , m_feedback(feedback) {
}

void PSimProducer::run(PSimDelivery& delivery) {
    prepare();
    while (auto work = m_schedule.next())
        std::visit([this, &delivery](auto& one) { perform(one, delivery); }, *work);
    finish();
}

/// Without memory for it now, each frame tries again.
void PSimProducer::prepare() {
    try {
        m_link->source->prepare(m_settings->shot());
    } catch (const std::bad_alloc&) {
        return;
    }
}

void PSimProducer::perform(PSimStreamSchedule::Loss& loss, PSimDelivery& delivery) {
    delivery.lost(std::move(loss.afterwards));
}

void PSimProducer::perform(PSimStreamSchedule::Job& job, PSimDelivery& /*delivery*/) {
    job.result.set_value(job.work());
}

void PSimProducer::perform(const PSimStreamSchedule::Still& still, PSimDelivery& delivery) {
    if (m_link->held)
        return;
    setNumber(m_still, still.number, still.microseconds);
    if (take(m_settings->shotAt(still.resolution), still.number, m_still))
        delivery.still(m_still);
}

void PSimProducer::perform(const PSimStreamSchedule::Frame& frame, PSimDelivery& delivery) {
    const std::uint64_t taken = ++m_link->taken;
    const std::uint64_t triggered = frame.triggered ? ++m_link->triggered : 0;
    if (m_link->observer->frameTaken(taken, triggered) && !m_link->held)
        deliverFrame(frame, delivery);
    m_observing = true;
    m_link->observer->frameDone(taken);
    m_observing = false;
}

/// False if there is no memory for the picture, which is then lost in the camera.
bool PSimProducer::take(const PSimShot& shot, std::uint64_t number, PSimPicture& picture) {
    try {
        m_link->source->take(shot, number, picture);
        return true;
    } catch (const std::bad_alloc&) {
        reportLostPicture();
        return false;
    }
}

/// Once for each stream. To a client the loss is a camera that sends nothing.
void PSimProducer::reportLostPicture() {
    if (!std::exchange(m_lacksMemory, true))
        std::fprintf(stderr, "simulated SDK: no memory for a picture, which is lost\n");
}

void PSimProducer::deliverFrame(const PSimStreamSchedule::Frame& frame, PSimDelivery& delivery) {
    setNumber(m_live, frame.number, frame.microseconds);
    if (!take(m_settings->shot(), frame.number, m_live))
        return;
    const PSimMeans means = m_live.means; // delivering may exchange the picture
    // Counted before the callback, so that a client has never received more frames than were
    // counted. If stopped or unplugged meanwhile, the picture is lost, as on a cable.
    if (!m_schedule.deliver())
        return;
    delivery.frame(m_live);
    m_feedback.apply(means, delivery);
}

// Leaves no caller waiting: jobs are cancelled, and a loss that could not be reported is completed.
void PSimProducer::finish() {
    const std::function<void()> afterwards = m_schedule.end();
    m_link->thermal->streamEnds();
    m_live = {}; // their memory is needed only while frames are taken
    m_still = {};
    if (afterwards)
        afterwards();
}
