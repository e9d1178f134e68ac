// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/frame/PDeviceMode.h>

#include <QComboBox>
#include <QList>

class PViewCamera;

/// Shows the mode of a camera and changes it, but not by the wheel. The GUI thread.
class PModeChooser : public QComboBox {
    Q_OBJECT

public:
    explicit PModeChooser(QWidget* parent = nullptr);

    /// Shows the modes of this camera; null, or one that is unplugged: none.
    void setCamera(PViewCamera* camera);

signals:
    /// The camera refused a mode, and why.
    void refused(const QString& reason);

protected:
    void wheelEvent(QWheelEvent* event) override;

private:
    void refresh();
    void choose(int index);
    static QString text(const PDeviceMode& mode);

    PViewCamera* m_camera = nullptr;
    QList<PDeviceMode> m_modes;
};
