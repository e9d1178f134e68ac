// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/record/PFrameRecorder.h>
#include <apps/pcdview/capture/PRecordSettings.h>

#include <QMap>
#include <QPointer>
#include <QWidget>

#include <optional>

class PRecording;
class PRecordings;
class PViewCamera;
class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QSpinBox;

/// What to record of the camera in front, and the progress of all recordings. The GUI thread.
class PRecordPanel : public QWidget {
    Q_OBJECT

public:
    /// The recordings must outlive it.
    explicit PRecordPanel(PRecordings& recordings, QWidget* parent = nullptr);

    /// The settings chosen by the user.
    PRecordSettings settings() const;
    /// Sets the camera in front, null for none, and updates the display.
    void setCamera(PViewCamera* camera);
    /// Shows this message for the camera with this id until it is recorded again.
    void showMessage(const QString& camera, const QString& message);

    /// The share of a plan that has been carried out, from 0 to 1: of the frames taken so far,
    /// those that still wait to be written do not count. Nothing without a planned end. Any thread.
    static std::optional<double> completedShare(const PFrameRecorder::Progress& progress);

signals:
    /// The user clicked the button "Record".
    void startRequested();

private:
    void makeFields(const PRecordSettings& settings);
    void makeLayout();
    void showFields();
    void showProgress();
    void showBar(const PRecording& recording);
    QStringList texts(const QString& inFront) const;
    static QString progressText(const PRecording& recording);

    PRecordings& m_recordings;
    QPointer<PViewCamera> m_camera;
    QMap<QString, QString> m_messages; ///< by the cameras' ids
    QComboBox* m_end;                  // children
    QSpinBox* m_frames;
    QDoubleSpinBox* m_seconds;
    QCheckBox* m_timeLapse;
    QDoubleSpinBox* m_interval;
    QComboBox* m_format;
    QPushButton* m_button;
    QProgressBar* m_bar;
    const PRecording* m_inBar = nullptr; ///< null: none
    QLabel* m_text;
};
