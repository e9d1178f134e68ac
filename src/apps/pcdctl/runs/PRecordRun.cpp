// SPDX-License-Identifier: MIT
#include <apps/pcdctl/runs/PRecordRun.h>

#include <apps/common/camera/PSensorTemperature.h>
#include <apps/common/ome/POmeStackWriter.h>
#include <apps/common/record/PSeriesWriter.h>

#include <QFileInfo>

#include <utility>

PRecordRun::PRecordRun(PDeviceManager& manager, PDevice* device, PCameraIdentity camera,
                       const PCtlOptions& options)
    : m_camera(std::move(camera))
    , m_options(options)
    , m_session(manager, device) {
}

PCtlOutcome PRecordRun::run() {
    const PCtlOutcome outcome = start();
    if (!outcome.isDone())
        return outcome;
    m_session.waitFor([this] { return isOver(); });
    // Asked before the stream is closed: closing it takes time, which is no stall.
    QString trouble = failureReason();
    const PStatus closed = m_session.close();
    if (trouble.isEmpty())
        trouble = closed.reason();
    finish(trouble);
    for (const QString& text : {m_recorder->progress().error, trouble, troubleInAccounts()}) {
        if (!text.isEmpty())
            return PCtlOutcome::failed(text);
    }
    return {};
}

PCtlOutcome PRecordRun::start() {
    const PCtlOutcome outcome = m_session.open(m_options);
    if (!outcome.isDone())
        return outcome;
    PDevice* const device = m_session.device();
    m_exposure = std::make_unique<PExposureWatch>(device);
    m_recorder = std::make_shared<PFrameRecorder>(
        makeWriter(),
        PRecordSchedule::Plan{m_options.frames, m_options.duration, m_options.interval});
    m_ledgerAtStart = m_session.ledger(); // an action may have had a stream before
    device->addFrameSink(m_recorder);
    if (!m_options.interval)
        device->limitLiveFrames(m_options.frames);
    QObject::connect(device, &PDevice::imageChanged, &m_session, [this](const PImage& image) {
        m_tally.add(image);
        m_lastFrame = Clock::now();
    });
    m_lastFrame = Clock::now();
    const PStatus started = device->startStream();
    m_wasStarted = started.isOk();
    return m_wasStarted ? PCtlOutcome() : PCtlOutcome::failed(started.reason());
}

std::unique_ptr<PFrameWriter> PRecordRun::makeWriter() const {
    PDevice* const device = m_session.device();
    if (POmeStackWriter::isName(m_options.output)) {
        return std::make_unique<POmeStackWriter>(POmeStackWriter::Options{
            m_options.output, m_camera, PSettingNames::of(device), m_options.frames,
            m_options.pixelSizeUm, PSensorTemperature::of(*device)});
    }
    PFileSequence files;
    files.setPattern(m_options.output); // good: the arguments were checked
    return std::make_unique<PSeriesWriter>(files, m_camera, m_options.pixelSizeUm);
}

/// Asked again and again while the stream runs.
bool PRecordRun::isOver() {
    const PFrameRecorder::Progress progress = m_recorder->progress();
    showStatus(progress);
    return progress.isOver || isStalled();
}

bool PRecordRun::isStalled() const {
    return Clock::now() - m_lastFrame > m_options.frameTimeout();
}

void PRecordRun::showStatus(const PFrameRecorder::Progress& progress) {
    if (!m_status.isDue())
        return;
    const PRecordTally& tally = progress.tally;
    QString text = u"%1 frames written  %2 waiting  %3 dropped"_qs.arg(tally.written)
                       .arg(tally.waiting)
                       .arg(tally.failed + tally.refused);
    if (m_options.frames)
        text += u"  %1 remaining"_qs.arg(tally.wanted - tally.written);
    if (progress.share)
        text.prepend(PStatusLine::bar(*progress.share) + u' ');
    m_status.show(text + u"  %1 fps"_qs.arg(m_tally.currentFps(), 0, 'f', 1));
}

/// Why the stream ended other than it should; empty if it did not. What went wrong with the files
/// is for the recorder to say.
QString PRecordRun::failureReason() const {
    const PFrameRecorder::Progress progress = m_recorder->progress();
    const quint64 taken = progress.tally.written + progress.tally.waiting;
    if (progress.isOver)
        return {};
    if (m_session.isUnplugged())
        return u"camera %1 was unplugged after %2 frames"_qs.arg(m_camera.id).arg(taken);
    if (m_session.isInterrupted()) {
        const bool hasSetEnd = m_options.frames || m_options.duration;
        return hasSetEnd || taken == 0 ? u"interrupted after %1 frames"_qs.arg(taken) : QString();
    }
    return u"camera %1 sent no frame for %2 s; %3 frames were taken before"_qs.arg(m_camera.id)
        .arg(double(m_options.frameTimeout().count()) / 1000)
        .arg(taken);
}

/// Waits until all that was taken is in whole files. An interruption does not cut this short: the
/// frames would be lost.
void PRecordRun::finish(const QString& trouble) {
    m_recorder->end(m_session.ledger().since(m_ledgerAtStart), trouble);
    while (!m_recorder->waitUntilFinished(std::chrono::milliseconds(100)))
        m_status.show(u"saving: %1 frames left"_qs.arg(m_recorder->progress().tally.waiting));
}

/// What is wrong with a recording that went to its end, by its ledger and tally.
QString PRecordRun::troubleInAccounts() const {
    const PFrameLedger ledger = m_session.ledger();
    if (!ledger.isBalanced() || ledger.waiting > 0 || !m_recorder->progress().tally.isBalanced())
        return u"the account of the frames does not balance"_qs;
    return {};
}

PRecordReport PRecordRun::report(const PCtlOutcome& outcome) const {
    return {
        {m_camera, m_session.mode(), m_tally, m_session.ledger(), std::nullopt, outcome.message},
        QFileInfo(m_options.output).absoluteFilePath(),
        m_recorder->progress().tally};
}
