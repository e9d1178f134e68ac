// SPDX-License-Identifier: MIT
#include <toupcam/sim/stream/PSimStream.h>

#include <toupcam/sim/stream/PSimThreadMark.h>

#include <future>
#include <utility>

PSimStream::PSimStream(std::shared_ptr<PSimCameraLink> link,
                       const std::shared_ptr<PSimSettings>& settings)
    : m_link(std::move(link))
    , m_schedule(m_link, settings)
    , m_feedback(m_link->source, settings, m_schedule)
    , m_producer(m_link, settings, m_schedule, m_feedback) {
}

PSimStream::~PSimStream() {
    // Not joined if it was closed from a callback: the thread is at its last statement.
    if (m_thread.joinable())
        m_thread.detach();
}

HRESULT PSimStream::start(const std::shared_ptr<PSimDelivery>& delivery) {
    if (PSimThreadMark::isOf(this))
        return E_UNEXPECTED; // inside a callback, so it is running
    // Serialises clients that start or stop at the same time.
    const std::lock_guard control(m_control);
    if (m_thread.joinable() || m_closed)
        return E_UNEXPECTED;
    m_feedback.dropBalance();
    m_schedule.begin(delivery);
    startDelivery(delivery);
    startProducer(delivery);
    return S_OK;
}

void PSimStream::startDelivery(const std::shared_ptr<PSimDelivery>& delivery) {
    // Weak: the event thread of pull mode may outlive the stream by its last callback.
    delivery->start(this, [weak = weak_from_this()] {
        if (const auto self = weak.lock())
            self->m_schedule.wake();
    });
    setDelivery(delivery);
}

void PSimStream::startProducer(const std::shared_ptr<PSimDelivery>& delivery) {
    m_link->thermal->streamBegins();
    // The thread keeps the stream alive: when closed from inside a callback, it ends on its own.
    m_thread = std::thread([self = shared_from_this(), delivery] {
        const PSimThreadMark mark(self.get());
        self->m_producer.run(*delivery);
    });
}

HRESULT PSimStream::stop() {
    if (PSimThreadMark::isOf(this))
        return E_WRONG_THREAD;
    const std::lock_guard control(m_control);
    if (!m_thread.joinable())
        return S_OK;
    m_schedule.requestStop();
    // Only m_control is held: a callback in progress may need the other locks to return. The
    // producing thread first: it posts to the event thread.
    m_thread.join();
    const std::shared_ptr<PSimDelivery> stopped = delivery();
    stopped->requestStop();
    stopped->join();
    setDelivery(nullptr);
    return S_OK;
}

void PSimStream::close() {
    m_closed = true;
    if (!PSimThreadMark::isOf(this)) {
        stop();
        return;
    }
    // On a thread of the stream, which cannot wait for itself, nor for a stop() that waits for it.
    m_schedule.requestStop();
    if (const std::shared_ptr<PSimDelivery> current = delivery())
        current->requestStop();
}

std::shared_ptr<PSimDelivery> PSimStream::delivery() const {
    const std::lock_guard lock(m_mutex);
    return m_delivery;
}

void PSimStream::setDelivery(std::shared_ptr<PSimDelivery> delivery) {
    const std::lock_guard lock(m_mutex);
    m_delivery = std::move(delivery);
}

HRESULT PSimStream::pull(bool still, void* buffer, int bits, ToupcamFrameInfoV2* info) {
    const std::shared_ptr<PSimDelivery> current = delivery();
    return current ? current->pull(still, buffer, bits, info) : E_UNEXPECTED;
}

void PSimStream::setExposureCallback(PITOUPCAM_EXPOSURE_CALLBACK callback, void* context) {
    m_feedback.setExposureCallback(callback, context);
}

HRESULT PSimStream::balanceOnce(PITOUPCAM_TEMPTINT_CALLBACK callback, void* context) {
    if (!m_schedule.isOpen())
        return E_UNEXPECTED;
    m_feedback.requestBalance({callback, context});
    return S_OK;
}

bool PSimStream::reportLoss(std::function<void()> afterwards) {
    return m_schedule.requestLoss(std::move(afterwards));
}

bool PSimStream::pushRaw(const void* data, const BITMAPINFOHEADER* header, int isSnapshot) {
    const std::shared_ptr<PSimDelivery> current = delivery();
    if (!current)
        return false;
    const auto push = [&] { return current->raw(data, header, isSnapshot); };
    // A fault pushes from the producing thread, which would wait for itself if this were a job.
    if (PSimThreadMark::isOf(this))
        return m_producer.isObserving() && push();
    return m_schedule.runBetweenFrames(push);
}

bool PSimStream::fireEvent(unsigned code) {
    const std::shared_ptr<PSimDelivery> current = delivery();
    if (!current)
        return false;
    // A thread of the stream would wait for itself, or for an event thread that waits for it.
    if (PSimThreadMark::isOf(this))
        return current->event(code, {});
    // Shared: the event thread may still be in set_value() when the wait here ends.
    const auto reported = std::make_shared<std::promise<void>>();
    const std::future<void> done = reported->get_future();
    if (!current->event(code, [reported] { reported->set_value(); }))
        return false;
    done.wait();
    return true;
}
