// SPDX-License-Identifier: MIT
#include <apps/pcdctl/doctor/PCameraTrial.h>

#include <apps/pcdctl/runs/PStreamRun.h>

#include <PLog/PLog.h>
#include <PLog/PLogSink.h>

#include <memory>

namespace {

using Severity = PFinding::Severity;

const QString camerasTopic = u"cameras"_qs;
const QString cameraTopic = u"camera"_qs;

constexpr double trialSeconds = 0.5;
constexpr quint64 enoughFrames = 10;
constexpr qsizetype mostProblemsShown = 3;
constexpr std::chrono::seconds
    longestFrameWait(5); // a camera may have been left at a long exposure

/// Ends as soon as there is a rate. The time counts from the first frame: that may be late, and the
/// next one then follows at once.
class TrialRun : public PStreamRun {
public:
    using PStreamRun::PStreamRun;

protected:
    bool isComplete() const override {
        return tally().frames() >= enoughFrames ||
               (tally().frames() >= 2 && tally().seconds() >= trialSeconds);
    }
};

PFinding listCameras(const QList<PDevice*>& devices) {
    if (devices.isEmpty()) {
        return {Severity::Error, camerasTopic, u"all plugins"_qs, u"no camera found"_qs,
                u"Connect the camera and check its power and cable; the findings on USB may say "
                "more. Simulated cameras: --sdk sim"_qs};
    }
    QStringList ids;
    for (const PDevice* device : devices)
        ids.append(QString::fromUtf8(device->deviceId(false)));
    return {Severity::Ok, camerasTopic, u"all plugins"_qs, ids.join(u", "_qs), {}};
}

/// The last warnings and errors, each once.
QStringList collectProblems(const QList<PLogRecord>& records) {
    QStringList texts;
    for (const PLogRecord& record : records) {
        if (record.level >= PLogLevel::Warning)
            texts.append(u"%1: %2"_qs.arg(record.source, record.text()));
    }
    texts.removeDuplicates();
    return texts.mid(qMax(qsizetype(0), texts.size() - mostProblemsShown));
}

} // namespace

PCameraTrial::PCameraTrial(PCameraHost& host, const PCtlOptions& options)
    : m_host(host)
    , m_options(options) {
    m_options.command = PCtlOptions::Command::Stream;
    m_options.timeout = longestFrameWait;
}

QList<PFinding> PCameraTrial::run() {
    QList<PFinding> findings = search();
    if (m_host.manager().devices().isEmpty())
        return findings;
    const PDeviceManager::Selection selection = m_host.manager().select(m_options.camera);
    if (selection.device == nullptr) {
        findings.append({Severity::Error, cameraTopic, m_options.camera, selection.problem,
                         u"Choose one of the cameras with --camera."_qs});
    } else {
        findings.append(stream(selection.device));
    }
    return findings;
}

QList<PFinding> PCameraTrial::search() {
    const auto log = std::make_shared<PMemoryLogSink>();
    PLog::addSink(log);
    m_host.findCameras();
    PLog::removeSink(log);
    QList<PFinding> findings{listCameras(m_host.manager().devices())};
    const QStringList problems = collectProblems(log->records());
    if (!problems.isEmpty()) {
        findings.append(
            {Severity::Warning, camerasTopic, u"log of the search"_qs, problems.join(u"; "_qs),
             u"If a camera is missing, close other programs that use it, then unplug it "
             "and plug it in again."_qs});
    }
    return findings;
}

PFinding PCameraTrial::stream(PDevice* device) {
    const PCameraIdentity camera = m_host.identify(device);
    TrialRun run(m_host.manager(), device, camera, m_options);
    const PCtlOutcome outcome = run.run();
    if (!outcome.isDone()) {
        const QString problem =
            run.wasStarted() ? u"it does not stream: "_qs : u"it does not start: "_qs;
        return {
            Severity::Error, cameraTopic, camera.id, problem + outcome.message,
            u"Close other programs that use the camera, then unplug it and plug it in again."_qs};
    }
    const PStreamTally& tally = run.report(outcome).tally;
    if (tally.frames() >= 2)
        m_rate = tally.megabytesPerSecond();
    return {camera.simulated ? Severity::Note : Severity::Ok,
            cameraTopic,
            camera.id,
            u"%1streams %2 frames/s, %3 MB/s in mode %4"_qs.arg(
                camera.simulated ? u"simulated; "_qs : QString(),
                QString::number(tally.fps(), 'f', 1),
                QString::number(tally.megabytesPerSecond(), 'f', 1), run.report(outcome).mode.name),
            {}};
}
