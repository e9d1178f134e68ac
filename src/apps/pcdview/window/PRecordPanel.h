// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdview/capture/PRecordSettings.h>

#include <QWidget>

class PRecording;
class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QSpinBox;

/// What to record, and how far it is. The GUI thread.
class PRecordPanel : public QWidget {
    Q_OBJECT

public:
    /// The recording must outlive it.
    explicit PRecordPanel(PRecording& recording, QWidget* parent = nullptr);

    PRecordSettings settings() const;
    /// Whether there is a live camera to record.
    void setPossible(bool possible);
    /// Shows how it went.
    void tell(const QString& message);

signals:
    void startWanted();

private:
    void makeFields(const PRecordSettings& settings);
    void makeLayout();
    void showFields();
    void showProgress();
    QString progressText() const;

    PRecording& m_recording;
    bool m_isPossible = false;
    QComboBox* m_end; // children
    QSpinBox* m_frames;
    QDoubleSpinBox* m_seconds;
    QCheckBox* m_timeLapse;
    QDoubleSpinBox* m_interval;
    QComboBox* m_format;
    QPushButton* m_button;
    QProgressBar* m_bar;
    QLabel* m_text;
};
