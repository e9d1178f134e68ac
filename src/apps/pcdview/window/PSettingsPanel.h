// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/PDevice.h>

#include <QPointer>
#include <QWidget>

class QLineEdit;

/// All settings of a camera, with a box that finds some of them. The GUI thread.
class PSettingsPanel : public QWidget {
    Q_OBJECT

public:
    explicit PSettingsPanel(QWidget* parent = nullptr);

    /// Shows the settings of this linked device; null: of none.
    void setDevice(PDevice* device);
    /// Whether a command that a panel of the device has begun is under way: one of its push buttons
    /// that choose nothing stays pressed.
    bool hasPressedButton() const;

private:
    void applyFilter();

    QLineEdit* m_filter; // children
    QWidget* m_nothing;
    QPointer<QWidget> m_panel;
    QPointer<PDevice> m_device;
};
