// SPDX-License-Identifier: MIT
#include <apps/pcdview/capture/PRecording.h>

#include <apps/common/output/PRecordOutput.h>
#include <apps/common/picture/PPictureFile.h>
#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/capture/PCaptureFolder.h>
#include <apps/pcdview/options/PViewLog.h>

#include <QDir>

namespace {

constexpr int checkEveryMs = 100;
constexpr std::chrono::seconds worthShowing(3); // longer than most exposures

using Format = PRecordSettings::Format;

/// Files of a series are in a folder of their own.
QString fileEnding(Format format) {
    switch (format) {
    case Format::TiffSeries:
        return u"/frame-######.tif"_qs;
    case Format::PngSeries:
        return u"/frame-######.png"_qs;
    case Format::OmeZarr:
        return u".ome.zarr"_qs;
    case Format::OmeTiff:
        break;
    }
    return u".ome.tif"_qs;
}

bool isSeries(Format format) {
    return fileEnding(format).startsWith(u'/');
}

} // namespace

PRecording::PRecording(std::shared_ptr<PWorkBudget> memory, QObject* parent)
    : QObject(parent)
    , m_memory(std::move(memory)) {
    m_check.setInterval(checkEveryMs);
    connect(&m_check, &QTimer::timeout, this, &PRecording::check);
}

PRecording::~PRecording() {
    endAsProgramCloses();
    if (!isRunning())
        return;
    while (!m_recorder->waitUntilFinished(std::chrono::milliseconds(checkEveryMs)))
        continue;
    // Nothing is connected any more to receive its end.
    const QString error = m_recorder->progress().error;
    if (!error.isEmpty())
        PViewLog::warning(error);
}

PStatus PRecording::start(PViewCamera& camera, const PRecordSettings& settings, double pixelSize) {
    if (const PStatus ready = camera.readiness(); !ready.isOk())
        return ready;
    // For a series, the folder must be new.
    const QString ending = isSeries(settings.format) ? QString() : fileEnding(settings.format);
    m_path = PCaptureFolder::newPath(camera.identity().id, QDateTime::currentDateTime(), ending);
    const PStatus folder = PPictureFile::prepareFolder(outputName(settings.format));
    if (!folder.isOk())
        return folder;
    m_camera = &camera;
    m_cameraId = camera.identity().id;
    m_device = camera.device();
    m_recorder = std::make_shared<PFrameRecorder>(makeWriter(camera, settings, pixelSize),
                                                  settings.plan(), m_memory);
    m_begin = PFrameRecorder::Clock::now();
    m_ledgerBefore = camera.ledger();
    m_device->addFrameSink(m_recorder);
    m_check.start();
    camera.setRecorded(true);
    return PStatus::Ok;
}

QString PRecording::outputName(Format format) const {
    return isSeries(format) ? m_path + fileEnding(format) : m_path;
}

std::unique_ptr<PFrameWriter> PRecording::makeWriter(const PViewCamera& camera,
                                                     const PRecordSettings& settings,
                                                     double pixelSize) {
    PRecordOutput::Options output;
    output.path = outputName(settings.format);
    output.frames = settings.plan().frames;
    if (pixelSize > 0)
        output.pixelSizeUm = pixelSize;
    return PRecordOutput::makeWriter(output, camera.identity(), *camera.device());
}

void PRecording::stop() {
    if (!isRunning())
        return;
    // Without a planned end, stopping is the regular end.
    const std::optional<double> share = m_recorder->progress().share;
    end(share && *share < 1 ? QT_TR_NOOP("it was stopped") : "");
}

void PRecording::endAsCameraCloses() {
    if (isRunning())
        end(QT_TR_NOOP("the camera was closed"));
}

void PRecording::endAsProgramCloses() {
    if (isRunning())
        end(QT_TR_NOOP("the program was closed"));
}

void PRecording::endAsFramesChange() {
    if (isRunning())
        end(QT_TR_NOOP("the frames get another size"));
}

void PRecording::finishWithin(std::chrono::milliseconds timeout) {
    if (isRunning() && m_recorder->waitUntilFinished(timeout))
        finish(m_recorder->progress());
}

bool PRecording::isOf(const PViewCamera& camera) const {
    return isRunning() && m_camera == &camera;
}

PFrameRecorder::Progress PRecording::progress() const {
    return isRunning() ? m_recorder->progress() : PFrameRecorder::Progress();
}

std::optional<std::chrono::seconds> PRecording::silence() const {
    if (!isRunning() || m_camera == nullptr || m_camera->frame().stamp == nullptr)
        return std::nullopt;
    const auto last = std::max(m_camera->frame().stamp->arrived, m_begin);
    const auto since =
        std::chrono::floor<std::chrono::seconds>(PFrameRecorder::Clock::now() - last);
    return since < worthShowing ? std::nullopt : std::optional(since);
}

void PRecording::check() {
    const PFrameRecorder::Progress progress = m_recorder->progress();
    if (progress.isFinished)
        return finish(progress);
    if (progress.isOver)
        end("");
    else if (m_camera == nullptr)
        end(QT_TR_NOOP("the camera was closed"));
    else if (m_device == nullptr || m_camera->device() != m_device)
        end(QT_TR_NOOP("the camera was unplugged"));
    else if (m_camera->state() != PViewCamera::State::Live)
        end(QT_TR_NOOP("the live picture was stopped"));
    emit changed();
}

void PRecording::finish(const PFrameRecorder::Progress& progress) {
    const QString message = outcome(progress);
    m_check.stop();
    m_recorder.reset();
    if (m_camera != nullptr)
        m_camera->setRecorded(false);
    emit finished(message, !progress.error.isEmpty());
}

void PRecording::end(const char* failure) {
    if (std::exchange(m_isEnding, true))
        return;
    m_failure = tr(failure);
    std::optional<PFrameLedger> ledger;
    // Not of a device that has replaced it meanwhile.
    if (m_camera != nullptr && m_camera->device() == m_device)
        ledger = m_camera->ledger().since(m_ledgerBefore);
    if (m_device != nullptr)
        m_device->removeFrameSink(m_recorder);
    // The reason in the file is in English, like everything else there.
    m_recorder->end(ledger, QString::fromLatin1(failure));
}

QString PRecording::outcome(const PFrameRecorder::Progress& progress) const {
    const quint64 written = progress.tally.written;
    const QString& failure = progress.error.isEmpty() ? m_failure : progress.error;
    if (!failure.isEmpty())
        return earlyEnd(written, failure);
    // There is no catalogue with the plural forms of English.
    return written == 1 ? tr("Recorded 1 frame: %1").arg(m_path)
                        : tr("Recorded %1 frames: %2").arg(QString::number(written), m_path);
}

QString PRecording::earlyEnd(quint64 written, const QString& failure) const {
    const QString text = written == 1
                             ? tr("The recording ended early after 1 frame: %1").arg(failure)
                             : tr("The recording ended early after %1 frames: %2")
                                   .arg(QString::number(written), failure);
    return written == 0 || failure.contains(m_path) ? text : text + u" (%1)"_qs.arg(m_path);
}

#include "moc_PRecording.cpp"
