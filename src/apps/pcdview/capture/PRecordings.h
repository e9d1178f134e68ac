// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdview/capture/PRecording.h>

#include <QList>

/// The running recordings, at most one for each camera. They share one memory budget for frames
/// that wait for the disk. The GUI thread.
class PRecordings : public QObject {
    Q_OBJECT

public:
    /// `memory`: the budget.
    explicit PRecordings(std::shared_ptr<PWorkBudget> memory = PWriteMemory::makeBudget(),
                         QObject* parent = nullptr);
    /// Ends the running ones and waits for their files.
    ~PRecordings() override;

    /// Starts a recording, see PRecording::start(). Also fails if this camera is being recorded.
    PStatus start(PViewCamera& camera, const PRecordSettings& settings, double pixelSize);
    /// The running recording of this camera; null if there is none, or for a null camera.
    PRecording* of(const PViewCamera* camera) const;
    /// In the order in which they were started.
    const QList<PRecording*>& running() const { return m_running; }

    /// Ends all of them while the cameras' ledgers still exist.
    void endAsProgramCloses();
    /// Waits for the files of those that have been ended, at most for this time.
    void finishWithin(std::chrono::milliseconds timeout);
    /// The frames of all of them that wait to be written.
    quint64 waiting() const;

signals:
    /// One of them started, progressed or ended.
    void changed();
    /// The recording of the camera with this id ended, see PRecording::finished().
    void finished(const QString& camera, const QString& message, bool hasFailed);

private:
    void onFinished(PRecording* recording, const QString& message, bool hasFailed);

    const std::shared_ptr<PWorkBudget> m_memory;
    QList<PRecording*> m_running; // children
};
