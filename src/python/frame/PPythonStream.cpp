// SPDX-License-Identifier: MIT
#include <python/frame/PPythonStream.h>

#include <python/host/PPythonError.h>
#include <python/host/PPythonHost.h>
#include <python/host/PPythonProcess.h>
#include <python/host/PPythonSession.h>

#include <QMetaObject>

#include <cmath>

PPythonStream::PPythonStream(std::shared_ptr<PPythonSession> session, const Plan& plan)
    : m_session(std::move(session))
    , m_plan(plan)
    , m_queue(std::make_shared<PFrameQueue>(PFrameSink::Kind::Live, m_plan.queue, m_plan.frames)) {
    if (m_session->isStreaming()) // before the camera is put into triggered capture
        throw PPythonError("BusyError", u"camera %1 is streaming already: close that stream "
                                        "first"_qs.arg(m_session->identity().id));
    m_ledgerAtStart = m_session->ledger();
    if (m_plan.trigger)
        m_trigger = std::make_unique<PPythonTrigger>(m_session, *m_plan.trigger, m_plan.frames);
    try {
        m_session->startStream(m_queue, m_plan.queue);
        m_lastFrame = Clock::now();
        if (m_trigger != nullptr)
            m_trigger->begin();
    } catch (const PPythonError&) {
        finish(*m_session, m_queue, m_trigger.get());
        throw;
    }
}

PPythonStream::~PPythonStream() {
    if (PPythonProcess::isForked()) {
        // All of it belongs to the first process.
        new std::shared_ptr<PFrameQueue>(std::move(m_queue));
        static_cast<void>(m_trigger.release());
        return;
    }
    if (m_isClosed || PPythonHost::isOwnThread()) {
        close();
        return;
    }
    m_queue->close();
    PPythonSession* const session = m_session.get();
    const std::shared_ptr<PPythonTrigger> trigger(std::move(m_trigger));
    const auto stop = [kept = m_session, queue = m_queue, trigger] {
        finish(*kept, queue, trigger.get());
    };
    // From the thread on which Python collects its garbage to that of the cameras.
    QMetaObject::invokeMethod(session, stop, Qt::QueuedConnection);
}

void PPythonStream::finish(PPythonSession& session, const std::shared_ptr<PFrameQueue>& queue,
                           PPythonTrigger* trigger) {
    const PUnlockedPython unlocked;
    queue->close();
    if (trigger != nullptr)
        trigger->end();
    session.stopStream(queue);
    if (trigger != nullptr)
        trigger->restore();
}

void PPythonStream::close() {
    if (m_isClosed || PPythonProcess::isForked())
        return;
    m_isClosed = true;
    finish(*m_session, m_queue, m_trigger.get());
    m_ledgerAtEnd = m_session->ledger();
}

bool PPythonStream::isEnded() const {
    return m_isClosed || (m_plan.frames && m_taken >= *m_plan.frames);
}

std::unique_ptr<PPythonFrame> PPythonStream::takeFrame() {
    std::optional<PDeviceFrame> frame = m_queue->take();
    if (!frame)
        return nullptr;
    m_lastFrame = Clock::now();
    auto shown = std::make_unique<PPythonFrame>(std::move(*frame), m_session->names(), m_taken++);
    if (isEnded())
        close(); // at once: the user may keep the stream to look at its counts
    return shown;
}

std::optional<std::unique_ptr<PPythonFrame>> PPythonStream::poll() {
    PPythonHost::instance().handleEvents();
    if (isEnded()) {
        close();
        return nullptr;
    }
    if (std::unique_ptr<PPythonFrame> frame = takeFrame())
        return frame;
    try {
        m_session->device(); // throws if it was unplugged or closed
        checkPatience();
    } catch (const PPythonError&) {
        close();
        throw;
    }
    return std::nullopt;
}

std::unique_ptr<PPythonFrame> PPythonStream::next() {
    std::optional<std::unique_ptr<PPythonFrame>> found = poll();
    while (!found) {
        PPythonHost::instance().waitFor(
            [this] { return m_queue->counts().waiting > 0 || !m_session->isOpen() || m_isClosed; },
            std::chrono::milliseconds(100));
        found = poll();
    }
    return std::move(*found);
}

std::chrono::milliseconds PPythonStream::patience() const {
    if (m_plan.timeout)
        return std::chrono::milliseconds(qint64(std::ceil(*m_plan.timeout * 1000)));
    const auto triggered = m_trigger != nullptr ? m_trigger->exposure() : decltype(patience()){};
    return m_session->longestWait() + triggered;
}

void PPythonStream::checkPatience() const {
    const std::chrono::milliseconds longest = patience();
    if (Clock::now() - m_lastFrame <= longest)
        return;
    throw PPythonError(
        "TimeoutError",
        u"camera %1 sent no frame for %2 s; %3 arrived before: give a longer timeout, or see "
        "\"pcdctl doctor\""_qs.arg(m_session->identity().id,
                                   QString::number(double(longest.count()) / 1000),
                                   QString::number(m_taken)));
}

PFrameQueue::Counts PPythonStream::counts() const {
    if (PPythonProcess::isForked())
        PPythonHost::instance(); // throws
    return m_queue->counts();
}

py::dict PPythonStream::ledger() const {
    // Without the interpreter's lock, the thread of the cameras may be deleting the device.
    if (!m_ledgerAtEnd && (!PPythonHost::isOwnThread() || PPythonProcess::isForked()))
        PPythonHost::instance(); // throws
    const PFrameLedger frames =
        (m_ledgerAtEnd ? *m_ledgerAtEnd : m_session->ledger()).since(m_ledgerAtStart);
    py::dict found;
    found["produced"] = frames.produced;
    for (const PFrameOutcome outcome : PFrameLedger::allOutcomes())
        found[py::str(PFrameLedger::key(outcome).toStdString())] = frames.count(outcome);
    found["waiting"] = frames.waiting;
    return found;
}
