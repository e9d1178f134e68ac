// SPDX-License-Identifier: MIT

// The producing thread of a stream.

#include <toupcam/sim/stream/PSimStream.h>

#include <utility>

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
        const auto when = m_lost || isFree() ? std::nullopt : m_shutter.nextTime();
        if (when)
            m_wake.wait_until(lock, *when);
        else
            m_wake.wait(lock);
    }
}

bool PSimStream::hasWork() {
    if (m_stopping || m_afterLoss || !m_jobs.empty())
        return true;
    return !m_lost && (!m_stills.empty() || isFrameDue(PSimPacer::Clock::now()));
}

bool PSimStream::isFrameDue(PSimShutter::Time now) {
    return isFree() ? !m_link->held && m_delivery->isReady() : m_shutter.isDue(now);
}

// Whether frames come as fast as they are taken away.
bool PSimStream::isFree() const {
    return m_link->lens->isUnpaced() && !m_shutter.isTriggered();
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
    const PSimShot shot = m_settings->shotAt(m_stills.front());
    m_stills.pop_front();
    const std::uint64_t frame = m_shutter.produced();
    picture.sequence = static_cast<unsigned>(frame);
    picture.microseconds = m_shutter.microseconds();
    const std::shared_ptr<PSimDelivery> current = m_delivery;
    lock.unlock();
    if (!m_link->held) {
        m_link->lens->take(shot, frame, picture);
        current->still(picture);
    }
    lock.lock();
}

bool PSimStream::countFrame() {
    const auto now = PSimPacer::Clock::now();
    if (!isFree())
        return m_shutter.take(now);
    m_shutter.takeNow(now);
    return true;
}

void PSimStream::takeFrame(Lock& lock, PSimPicture& picture) {
    if (!countFrame())
        return; // the exposure became longer a moment ago: not due any more
    picture.sequence = static_cast<unsigned>(m_shutter.produced() - 1);
    picture.microseconds = m_shutter.microseconds();
    const std::uint64_t taken = ++m_link->taken;
    const std::uint64_t triggered = m_shutter.isTriggered() ? ++m_link->triggered : 0;
    lock.unlock();
    const bool arrives = m_link->observer->frameTaken(taken, triggered) && !m_link->held;
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
    const PSimMeans means = picture.means; // delivering may exchange the picture
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
    if (m_link->lens->isExposed())
        adaptExposure(means.all());
    balanceWhite(means);
}

void PSimStream::adaptExposure(double mean) {
    if (!m_settings->adapt(mean))
        return;
    settingsChanged();
    Lock lock(m_mutex);
    const PITOUPCAM_EXPOSURE_CALLBACK callback = m_exposureCallback;
    void* const context = m_exposureContext;
    const std::shared_ptr<PSimDelivery> current = m_delivery;
    lock.unlock();
    current->exposureChanged();
    if (callback)
        callback(context);
}

void PSimStream::balanceWhite(const PSimMeans& means) {
    Lock lock(m_mutex);
    const std::optional<PSimOnePush::Request> request = m_onePush.delivered();
    lock.unlock();
    if (!request)
        return;
    m_settings->balance(means);
    int temperature = 0;
    int tint = 0;
    m_settings->tempTint(&temperature, &tint);
    if (request->callback)
        request->callback(temperature, tint, request->context);
}

// Leaves nobody waiting: jobs are cancelled, a loss that could not be told any more is followed up.
void PSimStream::finish(Lock& lock) {
    if (!m_lost && !isFree())
        m_shutter.settle(PSimPacer::Clock::now());
    m_active = false;
    m_link->thermal->streamEnds();
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
