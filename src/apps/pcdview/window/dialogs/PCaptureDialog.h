// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdview/capture/PNamePattern.h>

#include <QDialog>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

/// Lets the user choose where pictures and recordings go and how they are named, and remembers it.
/// The GUI thread.
class PCaptureDialog : public QDialog {
    Q_OBJECT

public:
    /// `camera`: the id that the example shows.
    explicit PCaptureDialog(const QString& camera, QWidget* parent = nullptr);

    void accept() override;

private:
    void makeFields();
    void makeLayout();
    void browse();
    void showExample();

    QString m_camera;
    PNamePattern m_pattern;
    QLineEdit* m_folder; // children
    QLineEdit* m_names;
    QComboBox* m_ending;
    QLabel* m_example;
    QPushButton* m_ok = nullptr;
};
