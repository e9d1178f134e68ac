// SPDX-License-Identifier: MIT
#include <apps/pcdctl/runs/PLiveRun.h>

#include <apps/pcdctl/cli/PCtlOutput.h>

#include <utility>

PLiveRun::PLiveRun(PDeviceManager& manager, PDevice* device, PCameraIdentity camera,
                   const PCtlOptions& options)
    : m_camera(std::move(camera))
    , m_options(options)
    , m_session(manager, device) {
}

PCtlOutcome PLiveRun::run() {
    const PCtlOutcome outcome = start();
    if (!outcome.isDone())
        return outcome;
    const bool reachedEnd = m_session.waitFor([this] { return isOver(); }, timeLimit());
    // Read before the stream is closed: the time that closing takes is not a stall.
    QString reason = failureReason(reachedEnd);
    if (!m_session.isUnplugged())
        beforeStop();
    const PStatus closed = m_session.close();
    if (reason.isEmpty())
        reason = closed.reason();
    finishOutput(reason);
    for (const QString& text : {outputError(), reason, ledgerReason()}) {
        if (!text.isEmpty())
            return PCtlOutcome::failed(text);
    }
    return {};
}

PCtlOutcome PLiveRun::start() {
    PCtlOutcome outcome = m_session.open(m_options);
    if (outcome.isDone())
        outcome = prepare();
    if (outcome.isDone())
        outcome = startStream();
    return outcome.isDone() ? afterStart() : outcome;
}

PCtlOutcome PLiveRun::startStream() {
    PDevice* const device = m_session.device();
    m_session.watchExposure();
    m_ledgerAtStart = m_session.ledger(); // an action may have had a stream before
    device->limitLiveFrames(frameLimit());
    QObject::connect(device, &PDevice::imageChanged, &m_session, [this](const PImage& image) {
        m_tally.add(image);
        m_lastFrame = Clock::now();
    });
    m_start = m_lastFrame = Clock::now();
    const PStatus started = device->startStream();
    m_wasStarted = started.isOk();
    return m_wasStarted ? PCtlOutcome() : PCtlOutcome::failed(started.reason());
}

/// In a time-lapse the recorder leaves most frames out: the number is not that of the stream.
std::optional<quint64> PLiveRun::frameLimit() const {
    return m_options.interval ? std::nullopt : m_options.frames;
}

void PLiveRun::record(std::unique_ptr<PFrameWriter> writer, const PRecordSchedule::Plan& plan) {
    m_recorder = std::make_shared<PFrameRecorder>(std::move(writer), plan);
    m_session.device()->addFrameSink(m_recorder);
}

/// Checked repeatedly while the stream runs. A recorder ends by itself when a frame could not be
/// saved.
bool PLiveRun::isOver() {
    showStatus();
    return isComplete() || isOutputOver() || isStalled();
}

bool PLiveRun::isOutputOver() const {
    return m_recorder && m_recorder->progress().isOver;
}

bool PLiveRun::isStalled() const {
    return Clock::now() - m_lastFrame > longestWait();
}

void PLiveRun::showStatus() {
    if (!m_status.isDue())
        return;
    const std::optional<double> done = share();
    m_status.show((done ? PStatusLine::bar(*done) + u' ' : QString()) + statusText());
}

/// The reason why the stream did not end as planned; empty if it did. The recorder reports failures
/// of the files.
QString PLiveRun::failureReason(bool reachedEnd) const {
    if (isComplete())
        return {};
    const QString taken = PCtlOutput::toFrames(framesTaken());
    if (m_session.isUnplugged())
        return u"camera %1 was unplugged after %2"_qs.arg(m_session.cameraId(), taken);
    if (!reachedEnd && m_session.isInterrupted())
        return mayEndNow() ? QString() : u"interrupted after %1"_qs.arg(taken);
    return reachedEnd && isStalled() ? stallReason() : QString();
}

bool PLiveRun::mayEndNow() const {
    return !m_options.frames && !m_options.duration;
}

QString PLiveRun::stallReason() const {
    const QString& camera = m_session.cameraId();
    const QString waited = QString::number(std::chrono::duration<double>(longestWait()).count());
    const QString before = PCtlOutput::toFrames(framesTaken());
    const QString lost = m_session.losses();
    if (lost.isEmpty())
        return u"camera %1 sent no frame for %2 s; %3 arrived before"_qs.arg(camera, waited,
                                                                             before);
    return u"no frame of camera %1 arrived for %2 s; %3 arrived before; %4"_qs.arg(camera, waited,
                                                                                   before, lost);
}

/// An interruption does not end this wait, as frames would be lost.
void PLiveRun::finishOutput(const QString& reason) {
    if (!m_recorder)
        return;
    m_recorder->end(m_session.ledger().since(m_ledgerAtStart), reason);
    while (!m_recorder->waitUntilFinished(std::chrono::milliseconds(100)))
        m_status.show(
            u"saving: %1 left"_qs.arg(PCtlOutput::toFrames(m_recorder->progress().tally.waiting)));
}

QString PLiveRun::outputError() const {
    return m_recorder ? m_recorder->progress().error : QString();
}

bool PLiveRun::isOutputBalanced() const {
    return !m_recorder || m_recorder->progress().tally.isBalanced();
}

/// What is wrong with a stream that reached its end, according to its ledger and tallies.
QString PLiveRun::ledgerReason() const {
    const QString lost = m_session.losses();
    if (m_tally.frames() == 0 && !m_session.isInterrupted() && !isComplete())
        return lost.isEmpty()
                   ? u"camera %1 sent no frame"_qs.arg(m_session.cameraId())
                   : u"no frame of camera %1 arrived: %2"_qs.arg(m_session.cameraId(), lost);
    const PFrameLedger ledger = m_session.ledger();
    if (!ledger.isBalanced() || ledger.waiting > 0 || !isOutputBalanced())
        return u"the frame counts do not add up"_qs;
    return {};
}

PStreamReport PLiveRun::streamReport(const PCtlOutcome& outcome) const {
    return {m_camera, m_session.mode(), m_tally, m_session.ledger(), std::nullopt, outcome.message};
}
