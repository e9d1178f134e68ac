// SPDX-License-Identifier: MIT
#include <apps/pcdctl/runs/PStreamRun.h>

#include <apps/common/picture/PPictureFile.h>

#include <PCd/frame/PFrameStamp.h>

#include <utility>

namespace {

using std::chrono::milliseconds;

quint64 lostOf(const PFrameLedger& ledger) {
    return ledger.produced - ledger.waiting - ledger.count(PFrameOutcome::Delivered) -
           ledger.count(PFrameOutcome::NotWanted);
}

} // namespace

PStreamRun::PStreamRun(PDeviceManager& manager, PDevice* device, PCameraIdentity camera,
                       const PCtlOptions& options)
    : m_camera(std::move(camera))
    , m_options(options)
    , m_session(manager, device) {
}

PCtlOutcome PStreamRun::run() {
    const PCtlOutcome outcome = start();
    if (!outcome.isDone())
        return outcome;
    const bool reachedEnd = m_session.waitFor([this] { return isOver(); }, m_options.duration);
    // Asked before the stream is closed: closing it takes time, which is no stall.
    const QString trouble = failureReason(reachedEnd);
    if (m_trigger && !m_session.isUnplugged())
        fireTrigger(0);
    const PStatus closed = m_session.close();
    finishSaving();
    for (const QString& text : {trouble, closed.reason(), troubleInAccounts()}) {
        if (!text.isEmpty())
            return PCtlOutcome::failed(text);
    }
    return {};
}

PCtlOutcome PStreamRun::start() {
    PCtlOutcome outcome = m_session.open(m_options);
    if (outcome.isDone() && !m_options.savePattern.isEmpty())
        outcome = startSaver();
    if (outcome.isDone() && m_options.command == PCtlOptions::Command::Trigger)
        outcome = prepareTrigger();
    return outcome.isDone() ? startStream() : outcome;
}

PCtlOutcome PStreamRun::startStream() {
    PDevice* const device = m_session.device();
    device->limitLiveFrames(m_options.frames);
    QObject::connect(device, &PDevice::imageChanged, &m_session, [this](const PImage& image) {
        m_tally.add(image);
        m_lastFrame = Clock::now();
    });
    m_start = m_lastFrame = Clock::now();
    const PStatus started = device->startStream();
    m_wasStarted = started.isOk();
    if (!m_wasStarted)
        return PCtlOutcome::failed(started.reason());
    if (!m_trigger || m_options.source == PTriggerControl::Source::External)
        return {};
    return fireTrigger(m_options.frames ? int(*m_options.frames) : PTriggerControl::Endless);
}

PCtlOutcome PStreamRun::prepareTrigger() {
    auto trigger = std::make_unique<PTriggerControl>(*m_session.device());
    const PStatus status =
        trigger->prepare(m_options.source, m_options.exposure, int(m_options.frames.value_or(1)));
    if (!status.isOk())
        return PCtlOutcome::failed(status.reason());
    m_trigger = std::move(trigger);
    return {};
}

PCtlOutcome PStreamRun::fireTrigger(int frames) {
    const PStatus status = m_trigger->fire(frames);
    return status.isOk() ? PCtlOutcome() : PCtlOutcome::failed(status.reason());
}

PCtlOutcome PStreamRun::startSaver() {
    PFileSequence files;
    const PStatus status = files.setPattern(m_options.savePattern);
    if (!status.isOk())
        return PCtlOutcome::wrongUsage(status.reason());
    const auto savePicture = [camera = m_camera, pixelSize = m_options.pixelSizeUm](
                                 const QString& path, const PDeviceFrame& frame) {
        return PPictureFile::save(path, frame.image.toQImage(),
                                  PPictureNotes::of(camera, frame.stamp.get(), pixelSize),
                                  PPictureFile::Existing::Keep, PPictureFile::Effort::Fast);
    };
    m_saver = std::make_shared<PFrameSaver>(files, savePicture);
    m_session.device()->addFrameSink(m_saver);
    return {};
}

/// Asked again and again while the stream runs.
bool PStreamRun::isOver() {
    showStatus();
    const bool all = m_options.frames && m_tally.frames() >= *m_options.frames;
    const bool saveFailed = m_saver && !m_saver->state().error.isEmpty();
    return all || saveFailed || isStalled();
}

bool PStreamRun::isStalled() const {
    return Clock::now() - m_lastFrame > longestWait();
}

/// A triggered frame is due when its exposure is over.
std::chrono::microseconds PStreamRun::longestWait() const {
    const std::chrono::microseconds exposure =
        m_trigger ? m_trigger->exposure() : std::chrono::microseconds(0);
    return exposure + m_options.frameTimeout();
}

/// Which frame of a triggered run is missing, as far as can be known: frames carry no numbers of
/// the camera's own, but one that was left out in the middle leaves a gap.
QString PStreamRun::missingFrame() const {
    QString text = u"frame %1"_qs.arg(m_tally.frames() + 1);
    if (m_options.frames)
        text += u" of %1"_qs.arg(*m_options.frames);
    text += u" did not come within %1 s of the one before"_qs.arg(
        std::chrono::duration<double>(longestWait()).count());
    if (m_tally.frames() >= 2) {
        text +=
            u"; %1 arrived, and the longest gap, %2 s, is after frame %3"_qs.arg(m_tally.frames())
                .arg(m_tally.longestGap().seconds, 0, 'f', 3)
                .arg(m_tally.longestGap().after);
    }
    return text;
}

/// How much of the run is done, from 0 to 1.
double PStreamRun::share() const {
    if (m_options.frames)
        return double(m_tally.frames()) / double(*m_options.frames);
    return std::chrono::duration<double>(Clock::now() - m_start) / *m_options.duration;
}

void PStreamRun::showStatus() {
    if (!m_status.isDue())
        return;
    const double fps = m_tally.currentFps();
    QString text = u"%1 frames  %2 fps  %3 MB/s  lost %4"_qs.arg(m_tally.frames())
                       .arg(fps, 0, 'f', 1)
                       .arg(fps * double(m_tally.frameBytes()) / 1e6, 0, 'f', 1)
                       .arg(lostOf(m_session.ledger()));
    if (m_options.frames || m_options.duration)
        text.prepend(PStatusLine::bar(share()) + u' ');
    if (m_saver)
        text += u"  saved %1"_qs.arg(m_saver->state().saved);
    m_status.show(text);
}

/// Why the stream ended other than it should; empty if it did not.
QString PStreamRun::failureReason(bool reachedEnd) const {
    const quint64 frames = m_tally.frames();
    if (m_session.isUnplugged())
        return u"camera %1 was unplugged after %2 frames"_qs.arg(m_camera.id).arg(frames);
    const bool gotAll = m_options.frames && frames >= *m_options.frames;
    if (reachedEnd && !gotAll && isStalled() && m_trigger)
        return missingFrame();
    if (reachedEnd && !gotAll && isStalled()) {
        return u"camera %1 sent no frame for %2 s; %3 frames arrived before"_qs.arg(m_camera.id)
            .arg(double(m_options.frameTimeout().count()) / 1000)
            .arg(frames);
    }
    const bool hasSetEnd = m_options.frames || m_options.duration;
    if (!reachedEnd && m_session.isInterrupted() && hasSetEnd)
        return u"interrupted after %1 frames"_qs.arg(frames);
    return {};
}

/// What is wrong with a stream that went to its end, by its ledger and tally.
QString PStreamRun::troubleInAccounts() const {
    const PFrameSaver::State saver = m_saver ? m_saver->state() : PFrameSaver::State();
    if (!saver.error.isEmpty())
        return saver.error;
    if (saver.unsaved > 0) {
        return u"%1 frames could not be saved: the camera is faster than the disk"_qs.arg(
            saver.unsaved);
    }
    if (m_tally.frames() == 0 && !m_session.isInterrupted())
        return u"camera %1 sent no frame"_qs.arg(m_camera.id);
    const PFrameLedger ledger = m_session.ledger();
    if (!ledger.isBalanced() || ledger.waiting > 0)
        return u"the account of the frames does not balance"_qs;
    return {};
}

/// Waits until all that was taken is saved. An interruption does not cut this short: the frames
/// would be lost.
void PStreamRun::finishSaving() {
    if (!m_saver)
        return;
    while (!m_saver->waitUntilIdle(milliseconds(100)))
        m_status.show(u"saving: %1 frames left"_qs.arg(m_saver->state().waiting));
}

PStreamReport PStreamRun::report(const PCtlOutcome& outcome) const {
    std::optional<quint64> saved;
    if (m_saver)
        saved = m_saver->state().saved;
    return {m_camera, m_session.mode(), m_tally, m_session.ledger(), saved, outcome.message};
}
