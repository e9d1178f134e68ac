// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/PFrameRecorder.h>
#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/capture/PRecordSettings.h>

#include <PCd/PDevice.h>

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <memory>

/// One recording at a time, from its start to its complete files, while the live picture goes on.
/// The GUI thread.
class PRecording : public QObject {
    Q_OBJECT

public:
    explicit PRecording(QObject* parent = nullptr);
    /// Ends a recording that still runs, and waits for its files.
    ~PRecording() override;

    /// Begins to record the live frames of this camera into new files of the capture folder. The
    /// pixel size is in micrometres, 0 if it is not known. Fails with the reason.
    PStatus start(PViewCamera& camera, const PRecordSettings& settings, double pixelSize);
    /// Takes no more frames; those taken are written yet.
    void stop();

    /// Ends it, if it runs, while the camera can still tell what became of the frames.
    void endAsCameraCloses();
    void endAsProgramCloses();

    /// True while it records this camera.
    bool isOf(const PViewCamera& camera) const;
    bool isRunning() const { return m_recorder != nullptr; }
    PFrameRecorder::Progress progress() const;
    /// How long no frame has come, where that is worth telling.
    std::optional<std::chrono::seconds> silence() const;
    /// The name of the camera that is recorded.
    QString camera() const { return m_camera == nullptr ? QString() : m_camera->identity().id; }
    /// The file, or the folder of a series.
    const QString& path() const { return m_path; }

signals:
    /// It began, went on or ended.
    void changed();
    /// How it ended, in words.
    void finished(const QString& message);

private:
    std::unique_ptr<PFrameWriter> makeWriter(const PViewCamera& camera,
                                             const PRecordSettings& settings, double pixelSize);
    void check();
    void end(const char* trouble);
    QString outcome(const PFrameRecorder::Progress& progress) const;

    std::shared_ptr<PFrameRecorder> m_recorder;
    QPointer<PDevice> m_device;
    QPointer<PViewCamera> m_camera;
    QString m_path;
    QString m_trouble;
    PFrameLedger m_ledgerBefore;
    PFrameRecorder::Clock::time_point m_begin;
    bool m_isEnding = false;
    QTimer m_check;
};
