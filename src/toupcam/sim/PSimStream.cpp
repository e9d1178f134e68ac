// SPDX-License-Identifier: MIT
#include <toupcam/sim/PSimStream.h>

#include <toupcam/sim/PSimThreadMark.h>

#include <utility>

namespace {

constexpr std::size_t kMostStills = 16;

} // namespace

PSimStream::PSimStream(std::shared_ptr<PSimCameraLink> link, std::shared_ptr<PSimSettings> settings)
    : m_link(std::move(link))
    , m_settings(std::move(settings)) {
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
    m_pacer.start(PSimPacer::Clock::now());
    m_delivery->start(this, [weak = weak_from_this()] {
        if (const auto self = weak.lock())
            self->wake();
    });
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

void PSimStream::wake() {
    const std::lock_guard lock(m_mutex);
    m_wake.notify_all();
}

bool PSimStream::reportLoss(std::function<void()> afterwards) {
    const std::lock_guard lock(m_mutex);
    if (!m_active || m_lost)
        return false;
    countDueFrames();
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
    const bool counting = m_active && !m_lost && !m_link->lens->isUnpaced();
    // What fell due while the client holds up the producing thread is counted here at once.
    return {counting ? m_pacer.producedBy(PSimPacer::Clock::now(), m_settings->period())
                     : m_pacer.produced(),
            m_delivered};
}

void PSimStream::run() {
    PSimPicture live;
    PSimPicture still;
    Lock lock(m_mutex);
    while (true) {
        waitForWork(lock);
        if (m_stopping)
            break;
        if (m_afterLoss)
            tellLoss(lock);
        else if (!m_jobs.empty())
            runJob(lock);
        else if (!m_stills.empty())
            takeStill(lock, still);
        else
            takeFrame(lock, live);
    }
    finish(lock);
}

void PSimStream::waitForWork(Lock& lock) {
    while (!hasWork()) {
        const bool frames = !m_lost && !m_link->lens->isUnpaced();
        if (frames)
            m_wake.wait_until(lock, m_pacer.due(m_settings->period()));
        else
            m_wake.wait(lock);
    }
}

bool PSimStream::hasWork() const {
    if (m_stopping || m_afterLoss || !m_jobs.empty())
        return true;
    return !m_lost && (!m_stills.empty() || isFrameDue(PSimPacer::Clock::now()));
}

bool PSimStream::isFrameDue(PSimPacer::Clock::time_point now) const {
    if (m_link->lens->isUnpaced())
        return !m_link->held && m_delivery->isReady();
    return now >= m_pacer.due(m_settings->period());
}

void PSimStream::tellLoss(Lock& lock) {
    const std::function<void()> afterwards = std::exchange(m_afterLoss, nullptr);
    m_stills.clear();
    const std::shared_ptr<PSimDelivery> current = m_delivery;
    lock.unlock();
    current->lost(afterwards);
    lock.lock();
}

void PSimStream::runJob(Lock& lock) {
    const std::shared_ptr<Job> job = m_jobs.front();
    m_jobs.pop_front();
    lock.unlock();
    const bool result = job->work();
    lock.lock();
    job->result = result;
    job->done = true;
    m_jobDone.notify_all();
}

void PSimStream::takeStill(Lock& lock, PSimPicture& picture) {
    PSimShot shot = m_settings->shot();
    shot.resolution = m_stills.front();
    m_stills.pop_front();
    const std::uint64_t frame = m_pacer.produced();
    picture.sequence = static_cast<unsigned>(frame);
    picture.microseconds = m_pacer.microseconds();
    const std::shared_ptr<PSimDelivery> current = m_delivery;
    lock.unlock();
    if (!m_link->held) {
        m_link->lens->take(shot, frame, picture);
        current->still(picture);
    }
    lock.lock();
}

// Counts the frames that fell due up to now; without a pace none does by itself.
void PSimStream::countDueFrames() {
    if (!m_link->lens->isUnpaced())
        m_pacer.settle(PSimPacer::Clock::now(), m_settings->period());
}

void PSimStream::takeFrame(Lock& lock, PSimPicture& picture) {
    const std::uint64_t before = m_pacer.produced();
    countDueFrames();
    if (m_link->lens->isUnpaced())
        m_pacer.produceNow(PSimPacer::Clock::now());
    if (m_pacer.produced() == before)
        return; // the exposure became longer a moment ago: not due any more
    picture.sequence = static_cast<unsigned>(m_pacer.produced() - 1);
    picture.microseconds = m_pacer.microseconds();
    const std::uint64_t taken = ++m_link->taken;
    lock.unlock();
    const bool arrives = m_link->observer->frameTaken(taken) && !m_link->held;
    if (arrives)
        deliverFrame(lock, picture);
    lock.lock();
    m_observing = true;
    lock.unlock();
    m_link->observer->frameDone(taken);
    lock.lock();
    m_observing = false;
}

// Called unlocked.
void PSimStream::deliverFrame(Lock& lock, PSimPicture& picture) {
    m_link->lens->take(m_settings->shot(), picture.sequence, picture);
    const double mean = m_link->lens->isExposed() ? picture.meanBrightness() : -1.0;
    lock.lock();
    // Stopped or unplugged while the picture was made: it is lost, as it would be on the cable.
    const bool arrives = !m_stopping && !m_lost;
    // Counted before the callback: a client that compares never has more than was delivered.
    m_delivered += arrives ? 1 : 0;
    const std::shared_ptr<PSimDelivery> current = m_delivery;
    lock.unlock();
    if (!arrives)
        return;
    current->frame(picture);
    if (mean >= 0.0)
        adaptExposure(mean);
}

void PSimStream::adaptExposure(double mean) {
    if (!m_settings->adapt(mean))
        return;
    Lock lock(m_mutex);
    const PITOUPCAM_EXPOSURE_CALLBACK callback = m_exposureCallback;
    void* const context = m_exposureContext;
    const std::shared_ptr<PSimDelivery> current = m_delivery;
    lock.unlock();
    current->exposureChanged();
    if (callback)
        callback(context);
}

// Leaves nobody waiting: jobs are cancelled, a loss that could not be told any more is followed up.
void PSimStream::finish(Lock& lock) {
    if (!m_lost)
        countDueFrames();
    m_active = false;
    m_stills.clear();
    for (const std::shared_ptr<Job>& job : m_jobs)
        job->done = true;
    m_jobs.clear();
    m_jobDone.notify_all();
    const std::function<void()> afterwards = std::exchange(m_afterLoss, nullptr);
    lock.unlock();
    if (afterwards)
        afterwards();
    lock.lock();
}
