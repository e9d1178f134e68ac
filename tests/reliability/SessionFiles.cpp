// SPDX-License-Identifier: MIT
// The steps of the session that write files or trigger frames.
#include <reliability/ScriptedSession.h>

#include <reliability/CallHook.h>
#include <reliability/ReliableCamera.h>

#include <apps/common/camera/PTriggerControl.h>
#include <apps/common/ome/POmeStackWriter.h>
#include <apps/common/reading/TiffReadBack.h>
#include <apps/common/record/PFrameRecorder.h>

#include <PCdPlugins/PTDevice/PTDevice.h>
#include <PCdPlugins/PTDevice/PTStreamThread.h>

#include <PCd/profile/PDeviceProfileDiff.h>
#include <PCd/profile/PDeviceProfileFile.h>
#include <PCd/profile/PDeviceProfilePlan.h>

#include <QFile>
#include <QWidget>

namespace {

constexpr quint64 recordedFrames = 4;
constexpr int triggeredFrames = 2;
constexpr std::chrono::seconds longestWriting(60);

QStringList changedIds(const QList<PDeviceProfileDiff::Difference>& differences) {
    QStringList ids;
    for (const PDeviceProfileDiff::Difference& one : differences)
        ids.append(
            u"%1 (%2 said, %3 true)"_qs.arg(QString::fromLatin1(one.id), one.inFile, one.onCamera));
    return ids;
}

/// Reads the camera again, with no fault.
QList<PDeviceProfileDiff::Difference> compareWithTruth(const PDeviceProfile& profile,
                                                       PDevice& device) {
    const CallHook::Pause pause;
    return PDeviceProfileDiff::between(profile, device);
}

PRecordSchedule::Plan makePlan(quint64 frames) {
    PRecordSchedule::Plan plan;
    plan.frames = frames;
    return plan;
}

} // namespace

void ScriptedSession::saveProfile() {
    const QString path = m_folder + u"/session.pcdprofile"_qs;
    QFile::remove(path);
    if (require(PDeviceProfileFile::save(*m_device, path), u"profile saved"_qs))
        checkProfile();
}

void ScriptedSession::checkProfile() {
    PDeviceProfile profile;
    const QString path = m_folder + u"/session.pcdprofile"_qs;
    const PStatus read = PDeviceProfileFile::read(path, profile);
    expectTrue(read.isOk(), u"a saved profile can be read: %1"_qs.arg(read.reason()));
    if (!read.isOk() || !m_device)
        return;
    if (isAnswering(*m_device))
        m_unreadValues = changedIds(compareWithTruth(profile, *m_device));
    else
        m_unreadValues.append(u"all values, of a lost camera"_qs);
}

void ScriptedSession::restoreProfile() {
    PDeviceProfile profile;
    const QString path = m_folder + u"/session.pcdprofile"_qs;
    if (!require(PDeviceProfileFile::read(path, profile), u"profile read"_qs))
        return;
    PDeviceProfilePlan plan(*m_device);
    if (!require(plan.make(profile), u"profile understood"_qs) || !m_device)
        return;
    const PDeviceProfileReport report = plan.apply();
    require(report.isComplete(), u"profile restored"_qs);
    // What was saved and was not true cannot be expected to be on the camera.
    if (!m_device || !m_unreadValues.isEmpty())
        return;
    if (!isAnswering(*m_device)) {
        expectTrue(!report.isComplete(), u"a profile is not restored on a lost camera"_qs);
        return;
    }
    for (const PDeviceProfileDiff::Difference& one : compareWithTruth(profile, *m_device)) {
        const QByteArray id =
            one.id.left(one.id.indexOf('.') < 0 ? one.id.size() : one.id.indexOf('.'));
        expectTrue(!report.applied.contains(id),
                   u"what the report names as applied is on the camera: %1 is %2, not %3"_qs.arg(
                       QString::fromLatin1(one.id), one.onCamera, one.inFile));
    }
}

void ScriptedSession::record() {
    if (!startStream())
        return stopStream();
    const QString path = m_folder + u"/session.ome.tif"_qs;
    QFile::remove(path);
    POmeStackWriter::Options options{path, {}, {}, recordedFrames, {}, {}};
    const auto recorder = std::make_shared<PFrameRecorder>(
        std::make_unique<POmeStackWriter>(options), makePlan(recordedFrames));
    const PFrameLedger start = m_device->frameLedger();
    m_device->addFrameSink(recorder);
    const bool isOver = waitFor([&] { return recorder->progress().isOver || !m_device; });
    std::optional<PFrameLedger> ledger;
    if (m_device) {
        m_device->removeFrameSink(recorder);
        ledger = m_device->frameLedger().since(start);
        expectTrue(ledger->isBalanced(), u"the ledger of the recording balances"_qs);
    }
    recorder->end(ledger, isOver && m_device ? QString() : u"interrupted"_qs);
    expectTrue(recorder->waitUntilFinished(longestWriting), u"a recording is completed"_qs);
    const PFrameRecorder::Progress progress = recorder->progress();
    expectTrue(progress.tally.isBalanced(), u"the tally of the recording balances"_qs);
    checkRecording(path, progress.tally.written);
    require(progress.tally.written == recordedFrames, u"all frames are recorded"_qs);
    stopStream();
}

void ScriptedSession::checkRecording(const QString& path, quint64 written) {
    const int pictures = QFile::exists(path) ? TiffReadBack(path).pictures() : 0;
    expectTrue(quint64(pictures) == written,
               u"%1 frames were recorded, the file has %2"_qs.arg(QString::number(written),
                                                                  QString::number(pictures)));
}

void ScriptedSession::trigger() {
    const std::unique_ptr<QWidget> panel = openPanel();
    if (!require(!m_device.isNull(), u"a camera to trigger"_qs))
        return;
    PTriggerControl control(*m_device);
    if (!require(control.prepare(PTriggerControl::Source::Software, std::chrono::microseconds(200),
                                 triggeredFrames),
                 u"trigger prepared"_qs))
        return;
    m_shown = 0;
    if (require(m_device->startStream(), u"triggered stream"_qs) &&
        require(control.fire(triggeredFrames), u"fire"_qs)) {
        require(waitFor([this] { return m_shown >= triggeredFrames || !m_device; }) && m_device,
                u"triggered frames"_qs);
    }
    stopStream();
    readExposure();
    checkPanel(panel.get());
}

/// As a host does that runs the camera in pull mode itself.
void ScriptedSession::pull() {
    auto* const camera = qobject_cast<PTDevice*>(m_device);
    const HToupcam handle = camera->sdkHandle();
    m_isPushed = false;
    const bool isTriggered = Toupcam_put_Option(handle, TOUPCAM_OPTION_TRIGGER, 1) >= 0;
    if (require(isTriggered, u"frames on a trigger"_qs) &&
        require(Toupcam_StartPullModeWithCallback(handle, cbEvent, camera) >= 0, u"pull mode"_qs)) {
        pullFrames();
        if (m_device)
            require(camera->pullThread()->stopThread(), u"the worker stops"_qs);
        if (m_device)
            require(Toupcam_Stop(handle) >= 0, u"the pulled stream stops"_qs);
    }
    if (m_device)
        checkLedger(m_device);
    if (m_device)
        require(Toupcam_put_Option(handle, TOUPCAM_OPTION_TRIGGER, 0) >= 0, u"video again"_qs);
}

void ScriptedSession::pullFrames() {
    auto* const camera = qobject_cast<PTDevice*>(m_device);
    const HToupcam handle = camera->sdkHandle();
    if (!require(camera->pullThread()->startThread(), u"the worker starts"_qs))
        return;
    m_shown = 0;
    m_stills = 0;
    require(Toupcam_Trigger(handle, 1) >= 0, u"one frame requested"_qs);
    require(waitFor([this] { return m_shown > 0 || !m_device; }) && m_device,
            u"a frame is pulled"_qs);
    if (m_device && require(m_device->triggerStillCapture(), u"one still requested"_qs))
        require(waitFor([this] { return m_stills > 0 || !m_device; }) && m_device,
                u"a still is pulled"_qs);
}
