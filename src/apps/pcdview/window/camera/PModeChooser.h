// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/frame/PDeviceMode.h>

#include <QComboBox>
#include <QList>

#include <functional>

class PViewCamera;

/// Shows the mode of a camera and changes it, but not by the wheel. The GUI thread.
class PModeChooser : public QComboBox {
    Q_OBJECT

public:
    explicit PModeChooser(QWidget* parent = nullptr);

    /// Shows the modes of this camera; null, or one that is unplugged: none.
    void setCamera(PViewCamera* camera);
    /// Called before a camera gets another mode; if it returns false, it keeps its mode.
    void setCondition(std::function<bool(const PViewCamera&)> condition);

signals:
    /// The camera refused a mode, and why.
    void refused(const QString& reason);

protected:
    void wheelEvent(QWheelEvent* event) override;

private:
    void refresh();
    void choose(int index);
    static QString text(const PDeviceMode& mode);

    std::function<bool(const PViewCamera&)> m_condition;
    PViewCamera* m_camera = nullptr;
    QList<PDeviceMode> m_modes;
};
