// SPDX-License-Identifier: MIT
#include <toupcam/sim/stream/PSimStream.h>

#include <toupcam/sim/stream/PSimThreadMark.h>

#include <utility>

namespace {

constexpr std::size_t kMostStills = 16;

} // namespace

PSimStream::PSimStream(std::shared_ptr<PSimCameraLink> link, std::shared_ptr<PSimSettings> settings)
    : m_link(std::move(link))
    , m_settings(std::move(settings))
    , m_shutter(m_link->externalTrigger) {
}

PSimStream::~PSimStream() {
    // Never joined: closed from inside a callback. The thread is at its last statement.
    if (m_thread.joinable())
        m_thread.detach();
}

HRESULT PSimStream::start(std::shared_ptr<PSimDelivery> delivery) {
    if (PSimThreadMark::isOf(this))
        return E_UNEXPECTED; // inside a callback, so it runs
    const std::lock_guard control(m_control);
    const std::lock_guard lock(m_mutex);
    if (m_thread.joinable() || m_closed)
        return E_UNEXPECTED;
    m_delivery = std::move(delivery);
    m_active = true;
    m_stopping = false;
    m_lost = false;
    m_delivered = 0;
    m_onePush.forget();
    m_shutter.start(PSimPacer::Clock::now(), m_settings->pace());
    m_delivery->start(this, [weak = weak_from_this()] {
        if (const auto self = weak.lock())
            self->wake();
    });
    m_link->thermal->streamBegins();
    m_thread = std::thread([self = shared_from_this()] {
        const PSimThreadMark mark(self.get());
        self->run();
    });
    return S_OK;
}

HRESULT PSimStream::stop() {
    if (PSimThreadMark::isOf(this))
        return E_WRONG_THREAD;
    const std::lock_guard control(m_control);
    std::shared_ptr<PSimDelivery> stopped;
    {
        const std::lock_guard lock(m_mutex);
        if (!m_thread.joinable())
            return S_OK;
        m_stopping = true;
        stopped = m_delivery;
        m_wake.notify_all();
    }
    // Unlocked: a callback in progress may need the lock to come to its end. The producing thread
    // first: it posts to the event thread.
    m_thread.join();
    stopped->requestStop();
    stopped->join();
    const std::lock_guard lock(m_mutex);
    m_delivery.reset();
    return S_OK;
}

void PSimStream::close() {
    {
        const std::lock_guard lock(m_mutex);
        m_closed = true;
    }
    if (!PSimThreadMark::isOf(this)) {
        stop();
        return;
    }
    const std::lock_guard lock(m_mutex);
    m_stopping = true;
    if (m_delivery)
        m_delivery->requestStop();
    m_wake.notify_all();
}

HRESULT PSimStream::snap(unsigned resolution) {
    const std::lock_guard lock(m_mutex);
    if (!m_active || m_stopping)
        return E_UNEXPECTED;
    if (m_stills.size() >= kMostStills)
        return E_PENDING;
    m_stills.push_back(resolution);
    m_wake.notify_all();
    return S_OK;
}

std::shared_ptr<PSimDelivery> PSimStream::delivery() const {
    const std::lock_guard lock(m_mutex);
    return m_delivery;
}

HRESULT PSimStream::pull(bool still, void* buffer, int bits, ToupcamFrameInfoV2* info) {
    const std::shared_ptr<PSimDelivery> current = delivery();
    return current ? current->pull(still, buffer, bits, info) : E_UNEXPECTED;
}

void PSimStream::setExposureCallback(PITOUPCAM_EXPOSURE_CALLBACK callback, void* context) {
    const std::lock_guard lock(m_mutex);
    m_exposureCallback = callback;
    m_exposureContext = context;
}

HRESULT PSimStream::balanceOnce(PITOUPCAM_TEMPTINT_CALLBACK callback, void* context) {
    const std::lock_guard lock(m_mutex);
    if (!m_active || m_stopping)
        return E_UNEXPECTED;
    m_onePush.ask({callback, context});
    return S_OK;
}

HRESULT PSimStream::trigger(unsigned short count) {
    const std::lock_guard lock(m_mutex);
    const bool listens =
        m_active && !m_stopping && m_shutter.trigger().mode() == PSimTrigger::Mode::Software;
    if (!listens)
        return count == 0 ? S_OK : E_UNEXPECTED;
    m_shutter.trigger().ask(count, PSimPacer::Clock::now());
    m_wake.notify_all();
    return S_OK;
}

bool PSimStream::signal() {
    const std::lock_guard lock(m_mutex);
    if (!m_active || m_stopping || !m_shutter.trigger().signal(PSimPacer::Clock::now()))
        return false;
    m_wake.notify_all();
    return true;
}

std::uint64_t PSimStream::missedSignals() const {
    const std::lock_guard lock(m_mutex);
    return m_shutter.trigger().missed();
}

void PSimStream::settingsChanged() {
    const std::lock_guard lock(m_mutex);
    if (m_active)
        m_shutter.change(PSimPacer::Clock::now(), m_settings->pace());
    m_wake.notify_all();
}

void PSimStream::wake() {
    const std::lock_guard lock(m_mutex);
    m_wake.notify_all();
}

bool PSimStream::reportLoss(std::function<void()> afterwards) {
    const std::lock_guard lock(m_mutex);
    if (!m_active || m_lost)
        return false;
    if (!isFree())
        m_shutter.settle(PSimPacer::Clock::now());
    m_lost = true;
    m_afterLoss = std::move(afterwards);
    m_wake.notify_all();
    return true;
}

bool PSimStream::pushRaw(const void* data, const BITMAPINFOHEADER* header, int isSnapshot) {
    Lock lock(m_mutex);
    if (!m_active)
        return false;
    const std::shared_ptr<PSimDelivery> current = m_delivery;
    if (PSimThreadMark::isOf(this)) {
        const bool betweenFrames = m_observing;
        lock.unlock();
        return betweenFrames && current->raw(data, header, isSnapshot);
    }
    const auto job = std::make_shared<Job>();
    job->work = [&] { return current->raw(data, header, isSnapshot); };
    m_jobs.push_back(job);
    m_wake.notify_all();
    m_jobDone.wait(lock, [&job] { return job->done; });
    return job->result;
}

bool PSimStream::fireEvent(unsigned code) {
    const std::shared_ptr<PSimDelivery> current = delivery();
    if (!current)
        return false;
    if (PSimThreadMark::isOf(this))
        return current->event(code, {});
    bool told = false;
    const auto tell = [this, &told] {
        const std::lock_guard lock(m_mutex);
        told = true;
        m_jobDone.notify_all();
    };
    if (!current->event(code, tell))
        return false;
    Lock lock(m_mutex);
    m_jobDone.wait(lock, [&told] { return told; });
    return true;
}

PSimFrameCounts PSimStream::counts() const {
    const std::lock_guard lock(m_mutex);
    const bool counting = m_active && !m_lost && !isFree();
    // What fell due while the client holds up the producing thread is counted here at once.
    return {counting ? m_shutter.producedBy(PSimPacer::Clock::now()) : m_shutter.produced(),
            m_delivered};
}
