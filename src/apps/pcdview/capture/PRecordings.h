// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdview/capture/PRecording.h>

#include <QList>

/// The recordings that run: one a camera, of several cameras at once. What waits for the disk is
/// bounded for all of them together. The GUI thread.
class PRecordings : public QObject {
    Q_OBJECT

public:
    explicit PRecordings(QObject* parent = nullptr);
    /// Ends those that still run, and waits for their files.
    ~PRecordings() override;

    /// Begins a recording: see PRecording::start(). Fails also if this camera is being recorded.
    PStatus start(PViewCamera& camera, const PRecordSettings& settings, double pixelSize);
    /// The recording of this camera that runs; null if there is none, or no camera.
    PRecording* of(const PViewCamera* camera) const;
    /// In the order of their beginnings; their files are not complete yet.
    const QList<PRecording*>& running() const { return m_running; }

    /// Ends all of them while the cameras can still tell what became of the frames.
    void endAsProgramCloses();

signals:
    /// One of them began, went on or ended.
    void changed();
    /// How the one of the camera of this id ended, in words.
    void finished(const QString& camera, const QString& message);

private:
    void onFinished(PRecording* recording, const QString& message);

    std::shared_ptr<PWriteMemory> m_memory;
    QList<PRecording*> m_running; // children
};
