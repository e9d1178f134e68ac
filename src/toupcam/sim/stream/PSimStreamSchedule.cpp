// SPDX-License-Identifier: MIT
#include <toupcam/sim/stream/PSimStreamSchedule.h>

#include <utility>

namespace {

constexpr std::size_t mostStills = 16;

} // namespace

PSimStreamSchedule::PSimStreamSchedule(std::shared_ptr<PSimCameraLink> link,
                                       std::shared_ptr<PSimSettings> settings)
    : m_link(std::move(link))
    , m_settings(std::move(settings))
    , m_shutter(m_link->externalTrigger) {
}

void PSimStreamSchedule::begin(std::shared_ptr<const PSimDelivery> delivery) {
    const std::lock_guard lock(m_mutex);
    m_delivery = std::move(delivery);
    m_active = true;
    m_stopping = false;
    m_lost = false;
    m_delivered = 0;
    m_shutter.start(PSimPacer::Clock::now(), m_settings->pace());
}

std::optional<PSimStreamSchedule::Work> PSimStreamSchedule::next() {
    // Held while work is chosen, not while it is done: a callback may call any SDK function.
    std::unique_lock lock(m_mutex);
    while (true) {
        while (!hasWork()) {
            if (const auto when = nextTime())
                m_wake.wait_until(lock, *when);
            else
                m_wake.wait(lock);
        }
        if (m_stopping)
            return std::nullopt;
        if (auto work = takeWork())
            return work;
    }
}

// Called under the lock, as those up to nextTime().
std::optional<PSimStreamSchedule::Work> PSimStreamSchedule::takeWork() {
    if (m_afterLoss) {
        m_stills.clear();
        return Loss{std::exchange(m_afterLoss, nullptr)};
    }
    if (!m_jobs.empty()) {
        Job job = std::move(m_jobs.front());
        m_jobs.pop_front();
        return job;
    }
    if (!m_stills.empty())
        return takeStill();
    return takeFrame();
}

PSimStreamSchedule::Still PSimStreamSchedule::takeStill() {
    const unsigned resolution = m_stills.front();
    m_stills.pop_front();
    return {resolution, m_shutter.produced(), m_shutter.microseconds()};
}

// Nothing if the exposure has just become longer: the frame is no longer due.
std::optional<PSimStreamSchedule::Frame> PSimStreamSchedule::takeFrame() {
    const Time now = PSimPacer::Clock::now();
    if (isFree())
        m_shutter.takeNow(now);
    else if (!m_shutter.take(now))
        return std::nullopt;
    return Frame{m_shutter.produced() - 1, m_shutter.microseconds(), m_shutter.isTriggered()};
}

bool PSimStreamSchedule::hasWork() {
    if (m_stopping || m_afterLoss || !m_jobs.empty())
        return true;
    return !m_lost && (!m_stills.empty() || isFrameDue(PSimPacer::Clock::now()));
}

bool PSimStreamSchedule::isFrameDue(Time now) {
    return isFree() ? !m_link->held && m_delivery->isReady() : m_shutter.isDue(now);
}

// True if frames are due as soon as they can be delivered.
bool PSimStreamSchedule::isFree() const {
    return m_link->source->isUnpaced() && !m_shutter.isTriggered();
}

std::optional<PSimStreamSchedule::Time> PSimStreamSchedule::nextTime() const {
    return m_lost || isFree() ? std::nullopt : m_shutter.nextTime();
}

bool PSimStreamSchedule::deliver() {
    const std::lock_guard lock(m_mutex);
    if (m_stopping || m_lost)
        return false;
    ++m_delivered;
    return true;
}

std::function<void()> PSimStreamSchedule::end() {
    const std::lock_guard lock(m_mutex);
    if (!m_lost && !isFree())
        m_shutter.settle(PSimPacer::Clock::now());
    m_active = false;
    m_delivery.reset();
    m_stills.clear();
    for (Job& job : m_jobs)
        job.result.set_value(false);
    m_jobs.clear();
    return std::exchange(m_afterLoss, nullptr);
}

void PSimStreamSchedule::requestStop() {
    const std::lock_guard lock(m_mutex);
    m_stopping = true;
    m_wake.notify_all();
}

void PSimStreamSchedule::wake() {
    // Under the lock, so that it cannot fall between the thread's check for work and its wait.
    const std::lock_guard lock(m_mutex);
    m_wake.notify_all();
}

void PSimStreamSchedule::settingsChanged() {
    const std::lock_guard lock(m_mutex);
    if (m_active)
        m_shutter.change(PSimPacer::Clock::now(), m_settings->pace());
    m_wake.notify_all();
}

bool PSimStreamSchedule::isOpen() const {
    const std::lock_guard lock(m_mutex);
    return m_active && !m_stopping;
}

HRESULT PSimStreamSchedule::requestStill(unsigned resolution) {
    const std::lock_guard lock(m_mutex);
    if (!m_active || m_stopping)
        return E_UNEXPECTED;
    if (m_stills.size() >= mostStills)
        return E_PENDING;
    m_stills.push_back(resolution);
    m_wake.notify_all();
    return S_OK;
}

bool PSimStreamSchedule::runBetweenFrames(std::function<bool()> work) {
    std::future<bool> result;
    {
        const std::lock_guard lock(m_mutex);
        if (!m_active)
            return false;
        m_jobs.push_back({std::move(work), {}});
        result = m_jobs.back().result.get_future();
        m_wake.notify_all();
    }
    // Without the lock: the producing thread needs it to get to the job, or to cancel it.
    return result.get();
}

HRESULT PSimStreamSchedule::trigger(unsigned short count) {
    const std::lock_guard lock(m_mutex);
    const bool accepts =
        m_active && !m_stopping && m_shutter.trigger().mode() == PSimTrigger::Mode::Software;
    if (!accepts)
        return count == 0 ? S_OK : E_UNEXPECTED;
    m_shutter.trigger().request(count, PSimPacer::Clock::now());
    m_wake.notify_all();
    return S_OK;
}

bool PSimStreamSchedule::signal() {
    const std::lock_guard lock(m_mutex);
    if (!m_active || m_stopping || !m_shutter.trigger().signal(PSimPacer::Clock::now()))
        return false;
    m_wake.notify_all();
    return true;
}

std::uint64_t PSimStreamSchedule::missedSignals() const {
    const std::lock_guard lock(m_mutex);
    return m_shutter.trigger().missed();
}

bool PSimStreamSchedule::requestLoss(std::function<void()> afterwards) {
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

PSimFrameCounts PSimStreamSchedule::counts() const {
    const std::lock_guard lock(m_mutex);
    const bool counting = m_active && !m_lost && !isFree();
    // Also counts frames that fell due while the client blocked the producing thread.
    return {counting ? m_shutter.producedBy(PSimPacer::Clock::now()) : m_shutter.produced(),
            m_delivered};
}
