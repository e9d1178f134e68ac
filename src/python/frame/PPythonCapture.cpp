// SPDX-License-Identifier: MIT
#include <python/frame/PPythonCapture.h>

#include <python/frame/PFrameQueue.h>
#include <python/host/PPythonError.h>
#include <python/host/PPythonHost.h>
#include <python/host/PPythonSession.h>

#include <apps/common/output/PRecordOutput.h>
#include <apps/common/picture/PPictureFile.h>
#include <apps/common/record/PFrameRecorder.h>
#include <apps/common/zarr/PZarrWriter.h>

#include <PCd/device/PDevice.h>

#include <QPointer>
#include <QScopeGuard>

namespace {

constexpr std::size_t framesInSnap = 2;
constexpr std::size_t framesInRecording = 8; // besides those in the recorder's own memory
constexpr std::chrono::milliseconds look(100);

using Clock = std::chrono::steady_clock;

std::chrono::milliseconds toMilliseconds(double seconds) {
    return std::chrono::ceil<std::chrono::milliseconds>(std::chrono::duration<double>(seconds));
}

std::optional<PRecordSchedule::Duration> toDuration(std::optional<double> seconds) {
    if (!seconds)
        return std::nullopt;
    return std::chrono::round<PRecordSchedule::Duration>(std::chrono::duration<double>(*seconds));
}

py::dict toDict(const PRecordTally& tally) {
    py::dict found;
    found["wanted"] = tally.wanted;
    found["written"] = tally.written;
    found["failed"] = tally.failed;
    found["refused"] = tally.refused;
    found["not_taken"] = tally.notTaken;
    found["not_due"] = tally.notDue;
    return found;
}

} // namespace

PPythonCapture::PPythonCapture(std::shared_ptr<PPythonSession> session)
    : m_session(std::move(session)) {
}

QString PPythonCapture::missingReason(const QString& what) const {
    if (m_session->isUnplugged())
        return u"camera %1 was unplugged before %2 arrived: plug it in, and open it again"_qs.arg(
            m_session->identity().id, what);
    if (!m_session->isOpen())
        return u"camera %1 was closed before %2 arrived: open it again"_qs.arg(
            m_session->identity().id, what);
    return u"camera %1 did not send %2 in time: give a longer timeout, or see \"pcdctl "
           "doctor\""_qs.arg(m_session->identity().id, what);
}

const char* PPythonCapture::failureType(const char* ofOpenCamera) const {
    if (m_session->isUnplugged())
        return "UnpluggedError";
    return m_session->isOpen() ? ofOpenCamera : "ClosedError";
}

std::unique_ptr<PPythonFrame> PPythonCapture::snap(std::optional<double> timeout) {
    PPythonHost& host = PPythonHost::instance();
    PDevice& camera = m_session->device();
    const auto atMost = timeout ? toMilliseconds(*timeout) : m_session->longestWait();
    const bool takesStills = camera.isSupportStillCapture();
    const auto live = std::make_shared<PFrameQueue>(PFrameSink::Kind::Live, 1, 1);
    const auto stills = std::make_shared<PFrameQueue>(PFrameSink::Kind::Snapshot, 1, 1);
    camera.addFrameSink(stills);
    const bool isOwnStream = !m_session->isStreaming();
    if (!isOwnStream)
        camera.addFrameSink(live);
    const QPointer<PDevice> device(&camera);
    const auto stop = qScopeGuard([&] {
        const PUnlockedPython unlocked;
        m_session->stopStream(live);
        if (device != nullptr) { // which stays if only the session was closed meanwhile
            device->removeFrameSink(live);
            device->removeFrameSink(stills);
        }
    });
    if (isOwnStream)
        m_session->startStream(live, framesInSnap);
    const auto await = [&](const PFrameQueue& queue, const QString& what) {
        host.waitFor([&] { return queue.counts().waiting > 0 || !m_session->isOpen(); }, atMost);
        if (queue.counts().waiting == 0)
            throw PPythonError(failureType("TimeoutError"), missingReason(what));
    };
    // A camera takes stills only during a stream, between its live frames.
    await(*live, u"a live frame"_qs);
    if (takesStills) {
        if (!m_session->device().triggerStillCapture())
            m_session->check(PStatus::failure(u"it refused to take a still"_qs), "RefusedError");
        await(*stills, u"a still"_qs);
    }
    return std::make_unique<PPythonFrame>(*(takesStills ? stills : live)->take(),
                                          m_session->names(), 0);
}

void PPythonCapture::prepareFiles(const Plan& plan) const {
    const PStatus name = PRecordOutput::checkName(plan.path);
    if (!name.isOk())
        throw PPythonError("BadValueError", name.reason(),
                           {{"property", u"path"_qs}, {"value", plan.path}});
    if (plan.pyramid && PRecordOutput::toForm(plan.path) != PRecordOutput::Form::Zarr) {
        const QString expected =
            u"a name that ends in %1"_qs.arg(PZarrWriter::endings().join(u", "_qs));
        throw PPythonError(
            "BadValueError",
            u"\"pyramid\" is not for \"%1\": expected %2"_qs.arg(plan.path, expected),
            {{"property", u"path"_qs}, {"value", plan.path}, {"expected", expected}});
    }
    // What is refused leaves no new folder behind.
    m_session->checkIdle();
    PPythonError::check(PPictureFile::prepareFolder(plan.path), "RecordError");
}

py::dict PPythonCapture::record(const Plan& plan) {
    PPythonHost& host = PPythonHost::instance();
    PDevice& camera = m_session->device();
    const auto atMost = plan.timeout ? toMilliseconds(*plan.timeout) : m_session->longestWait();
    prepareFiles(plan);
    const auto recorder = std::make_shared<PFrameRecorder>(
        PRecordOutput::makeWriter({plan.path, plan.frames, plan.pixelSizeUm, plan.pyramid},
                                  m_session->identity(), camera),
        PRecordSchedule::Plan{plan.frames, toDuration(plan.duration), toDuration(plan.interval)});
    const PFrameLedger ledgerAtStart = m_session->ledger();
    Clock::time_point lastFrame = Clock::now();
    QObject context; // for the connection, which ends with this function
    QObject::connect(&camera, &PDevice::imageChanged, &context,
                     [&lastFrame] { lastFrame = Clock::now(); });
    QString failure;
    const auto isOver = [&] {
        if (!m_session->isOpen())
            failure = missingReason(u"all frames"_qs);
        else if (Clock::now() - lastFrame > atMost)
            failure = missingReason(u"a frame"_qs);
        return !failure.isEmpty() || recorder->progress().isOver;
    };
    const auto finish = [&](const QString& reason) {
        const PUnlockedPython unlocked;
        m_session->stopStream(recorder);
        recorder->end(m_session->ledger().since(ledgerAtStart), reason);
        while (!recorder->waitUntilFinished(look)) {
        }
    };
    m_session->startStream(recorder, framesInRecording);
    try {
        host.waitFor(isOver, std::nullopt);
    } catch (const py::error_already_set&) {
        finish(u"interrupted"_qs); // what was recorded stays
        throw;
    }
    finish(failure);
    const PFrameRecorder::Progress end = recorder->progress();
    const QString error = end.error.isEmpty() ? failure : end.error;
    if (!error.isEmpty()) {
        throw PPythonError(failureType("RecordError"),
                           u"\"%1\" has %2 frames: %3"_qs.arg(
                               plan.path, QString::number(end.tally.written), error));
    }
    return toDict(end.tally);
}
