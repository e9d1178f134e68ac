// SPDX-License-Identifier: MIT
#include <toupcam/trace/replay/PReplayWorld.h>

#include <toupcam/trace/replay/PReplayReader.h>

#include <algorithm>

namespace {

// Longer than a callback takes in a debugger-less run: what is waited for then is not coming.
constexpr std::chrono::seconds grace(5);
// Users do not wait for the night of a time-lapse.
constexpr std::chrono::seconds longestPause(10);

std::chrono::microseconds toPause(qint64 microseconds) {
    const std::chrono::microseconds pause(std::max<qint64>(microseconds, 0));
    return std::min<std::chrono::microseconds>(pause, longestPause);
}

} // namespace

PReplayWorld& PReplayWorld::instance() {
    static auto* const world = new PReplayWorld;
    return *world;
}

void PReplayWorld::load(const QString& path) {
    if (m_answers != nullptr)
        throw PReplayError(0, u"another trace is being replayed already"_qs);
    m_recording = PReplayReader::readFile(path);
    if (m_recording.header.value(u"frames"_qs) == u"whole"_qs)
        m_frames.open(path + u".frames"_qs);
    m_lastTime = Clock::now();
    m_answers = std::make_unique<PReplayAnswers>(m_recording);
    startDelivery();
}

int PReplayWorld::toNumber(HToupcam handle) const {
    const std::lock_guard lock(m_mutex);
    const auto found = std::find_if(m_handleByNumber.begin(), m_handleByNumber.end(),
                                    [handle](const auto& entry) { return entry.second == handle; });
    return found == m_handleByNumber.end() ? 0 : found->first;
}

HToupcam PReplayWorld::toHandle(int number) {
    if (number == 0)
        return nullptr;
    const std::lock_guard lock(m_mutex);
    HToupcam& handle = m_handleByNumber[number];
    if (handle == nullptr)
        handle = &m_handles.emplace_back();
    return handle;
}

const PReplayCall* PReplayWorld::take(const char* name, int handle, const QJsonObject& in) {
    const PReplayCall* const call =
        m_answers == nullptr ? nullptr : m_answers->take(QString::fromLatin1(name), handle, in);
    if (call != nullptr && call->isChange) {
        m_lastTime = Clock::now();
        m_lastAt = call->at;
        m_changed.notify_all();
    }
    return call;
}

const PReplayCall* PReplayWorld::answer(const char* name, int handle, const QJsonObject& in,
                                        const Changed& changed) {
    const std::lock_guard lock(m_mutex);
    const PReplayCall* const call = take(name, handle, in);
    if (call != nullptr && changed)
        changed(*call, m_client);
    return call;
}

const PReplayCall* PReplayWorld::answerEnd(const char* name, int handle, const QJsonObject& in,
                                           const Changed& changed) {
    std::unique_lock lock(m_mutex);
    const PReplayCall* const call = take(name, handle, in);
    const bool isCallback = std::this_thread::get_id() == m_deliveryThread;
    // Without one, the client's callbacks are forgotten too: its memory may be gone next.
    const PReplayCall none;
    if (call != nullptr && !isCallback)
        waitForCallbacks(lock, *call);
    changed(call == nullptr ? none : *call, m_client);
    if (!isCallback)
        m_changed.wait(lock, [&] { return !isDelivering(handle); });
    return call;
}

/// Waits until the callbacks have run that did so before this call had returned.
void PReplayWorld::waitForCallbacks(std::unique_lock<std::mutex>& lock, const PReplayCall& end) {
    m_hurryUntil = std::max(m_hurryUntil, end.returnLine);
    m_changed.notify_all();
    m_changed.wait_for(lock, grace,
                       [&] { return !m_answers->isCallbackLeft(end.handle, end.returnLine); });
}

bool PReplayWorld::isDelivering(int handle) const {
    return m_delivering && *m_delivering == handle;
}

void PReplayWorld::keep(std::unique_ptr<PTraceRecords::Devices> devices) {
    const std::lock_guard lock(m_mutex);
    m_devices.push_back(std::move(devices));
}

void PReplayWorld::copyPixels(const PReplayPixels& pixels, void* data) {
    m_frames.read(pixels, static_cast<unsigned char*>(data));
}

/// On a thread of its own, as the SDK's callbacks are; it ends with the last recorded one.
void PReplayWorld::startDelivery() {
    const std::lock_guard lock(m_mutex);
    std::thread delivery([this] { deliverAll(); });
    m_deliveryThread = delivery.get_id();
    delivery.detach();
}

void PReplayWorld::deliverAll() {
    std::unique_lock lock(m_mutex);
    while (const PReplayCallback* const callback = m_answers->nextCallback()) {
        waitUntilDue(lock, *callback);
        deliver(lock, *callback);
    }
}

void PReplayWorld::waitUntilDue(std::unique_lock<std::mutex>& lock,
                                const PReplayCallback& callback) {
    const auto dueTime = [&] { return m_lastTime + toPause(callback.at - m_lastAt); };
    const auto isHurried = [&] { return callback.line < m_hurryUntil; };
    // A change that does not come, because the client does not do what it did, ends the wait.
    while (!m_answers->hasReached(callback.line) && Clock::now() < dueTime() + grace)
        m_changed.wait_until(lock, dueTime() + grace);
    while (!isHurried() && Clock::now() < dueTime())
        m_changed.wait_until(lock, dueTime());
}

void PReplayWorld::deliver(std::unique_lock<std::mutex>& lock, const PReplayCallback& callback) {
    const std::function<void()> run = m_client.prepare(callback, m_frames);
    m_delivering = callback.handle;
    m_lastTime = Clock::now();
    m_lastAt = callback.at;
    // Before it runs: what the client reads in it was recorded after it began.
    m_answers->passCallback();
    // Not under the lock: the client makes calls in its callbacks.
    lock.unlock();
    if (run)
        run();
    lock.lock();
    m_delivering.reset();
    m_changed.notify_all();
}

PReplayWorld::Report PReplayWorld::report() {
    const std::lock_guard lock(m_mutex);
    if (m_answers == nullptr)
        return {};
    m_answers->finish();
    QStringList notices{m_recording.notice, m_frames.notice()};
    notices.removeAll(QString());
    return {m_answers->count(), m_answers->divergences(), notices.join(u"; "_qs)};
}
