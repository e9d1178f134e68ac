// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/record/PFrameRecorder.h>
#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/capture/PRecordSettings.h>

#include <PCd/device/PDevice.h>

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <memory>

/// One recording of a camera, from its start to its complete files; the live picture continues.
/// The GUI thread.
class PRecording : public QObject {
    Q_OBJECT

public:
    /// `memory`: the budget for frames that wait to be written.
    explicit PRecording(std::shared_ptr<PWorkBudget> memory, QObject* parent = nullptr);
    /// Ends a recording that still runs, and waits for its files.
    ~PRecording() override;

    /// Starts, once, to record the live frames of this camera into new files of the capture folder.
    /// The pixel size is in micrometres, 0 if it is not known. Fails with the reason.
    PStatus start(PViewCamera& camera, const PRecordSettings& settings, double pixelSize);
    /// Takes no more frames; those already taken are still written.
    void stop();

    /// Ends it, if it is running, while the camera can still account for the frames.
    void endAsCameraCloses();
    void endAsProgramCloses();
    /// The frames are about to get another size.
    void endAsFramesChange();

    /// Waits for its files, at most for this time, once it has been ended.
    void finishWithin(std::chrono::milliseconds timeout);

    /// True while it records this camera, or completes its files.
    bool isOf(const PViewCamera& camera) const;
    PFrameRecorder::Progress progress() const;
    /// The time since the last frame, if it is long enough to be shown.
    std::optional<std::chrono::seconds> silence() const;
    /// The id of the recorded camera, even after that was closed.
    const QString& cameraId() const { return m_cameraId; }
    /// The file, or the folder of a series.
    const QString& path() const { return m_path; }

signals:
    /// Its progress changed.
    void changed();
    /// It ended and its files are complete; the message is the result, for the user. hasFailed:
    /// frames or files are missing that could not be written.
    void finished(const QString& message, bool hasFailed);

private:
    QString outputName(PRecordSettings::Format format) const;
    std::unique_ptr<PFrameWriter> makeWriter(const PViewCamera& camera,
                                             const PRecordSettings& settings, double pixelSize);
    bool isRunning() const { return m_recorder != nullptr; }
    void check();
    void finish(const PFrameRecorder::Progress& progress);
    void end(const char* failure);
    QString outcome(const PFrameRecorder::Progress& progress) const;
    QString earlyEnd(quint64 written, const QString& failure) const;

    const std::shared_ptr<PWorkBudget> m_memory;
    std::shared_ptr<PFrameRecorder> m_recorder;
    QPointer<PDevice> m_device;
    QPointer<PViewCamera> m_camera;
    QString m_cameraId;
    QString m_path;
    QString m_failure;
    PFrameLedger m_ledgerBefore;
    PFrameRecorder::Clock::time_point m_begin;
    bool m_isEnding = false;
    QTimer m_check;
};
