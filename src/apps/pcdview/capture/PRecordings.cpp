// SPDX-License-Identifier: MIT
#include <apps/pcdview/capture/PRecordings.h>

#include <algorithm>

PRecordings::PRecordings(std::shared_ptr<PWorkBudget> memory, QObject* parent)
    : QObject(parent)
    , m_memory(std::move(memory)) {
}

PRecordings::~PRecordings() {
    endAsProgramCloses(); // all first, so that their files are completed in parallel
    qDeleteAll(m_running);
}

PStatus PRecordings::start(PViewCamera& camera, const PRecordSettings& settings, double pixelSize) {
    if (of(&camera) != nullptr)
        return PStatus::failure(tr("this camera is already being recorded"));
    auto recording = std::make_unique<PRecording>(m_memory, this);
    const PStatus status = recording->start(camera, settings, pixelSize);
    if (!status.isOk())
        return status;
    PRecording* const started = recording.release();
    m_running.append(started);
    connect(started, &PRecording::changed, this, &PRecordings::changed);
    connect(started, &PRecording::finished, this,
            [this, started](const QString& message, bool hasFailed) {
                onFinished(started, message, hasFailed);
            });
    emit changed();
    return PStatus::Ok;
}

PRecording* PRecordings::of(const PViewCamera* camera) const {
    const auto found = std::find_if(m_running.begin(), m_running.end(), [&](const auto* recording) {
        return camera != nullptr && recording->isOf(*camera);
    });
    return found == m_running.end() ? nullptr : *found;
}

void PRecordings::endAsProgramCloses() {
    for (PRecording* recording : std::as_const(m_running))
        recording->endAsProgramCloses();
}

void PRecordings::finishWithin(std::chrono::milliseconds timeout) {
    const auto end = PFrameRecorder::Clock::now() + timeout;
    for (PRecording* recording : QList(m_running)) { // those that finish are removed
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(
            std::max(end - PFrameRecorder::Clock::now(), PFrameRecorder::Clock::duration::zero()));
        recording->finishWithin(left);
    }
}

quint64 PRecordings::waiting() const {
    quint64 frames = 0;
    for (const PRecording* recording : m_running)
        frames += recording->progress().tally.waiting;
    return frames;
}

void PRecordings::onFinished(PRecording* recording, const QString& message, bool hasFailed) {
    m_running.removeOne(recording);
    recording->deleteLater(); // it is the sender
    emit changed();
    emit finished(recording->cameraId(), message, hasFailed);
}

#include "moc_PRecordings.cpp"
