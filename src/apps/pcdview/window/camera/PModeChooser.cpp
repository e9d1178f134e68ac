// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/camera/PModeChooser.h>

#include <apps/pcdview/camera/PViewCamera.h>

#include <PCd/device/PDevice.h>

#include <QPointer>
#include <QWheelEvent>

#include <utility>

PModeChooser::PModeChooser(QWidget* parent)
    : QComboBox(parent) {
    setObjectName(u"modes"_qs);
    setToolTip(tr("Camera resolution"));
    setAccessibleName(toolTip());
    setSizeAdjustPolicy(QComboBox::AdjustToContents);
    connect(this, &QComboBox::activated, this, &PModeChooser::choose);
}

void PModeChooser::setCamera(PViewCamera* camera) {
    if (m_camera != nullptr)
        disconnect(m_camera, nullptr, this, nullptr);
    m_camera = camera;
    if (camera != nullptr) {
        connect(camera, &PViewCamera::modeChanged, this, &PModeChooser::refresh);
        connect(camera, &PViewCamera::stateChanged, this, &PModeChooser::refresh);
        connect(camera, &QObject::destroyed, this, [this] { m_camera = nullptr; });
    }
    refresh();
}

void PModeChooser::refresh() {
    clear();
    m_modes.clear();
    const bool hasDevice = m_camera != nullptr && m_camera->device() != nullptr;
    setEnabled(hasDevice);
    setPlaceholderText(hasDevice ? tr("not reported") : QString());
    if (!hasDevice)
        return;
    m_modes = m_camera->device()->getSupportModes();
    for (const PDeviceMode& mode : std::as_const(m_modes))
        addItem(text(mode));
    setCurrentIndex(int(m_modes.indexOf(m_camera->device()->reportedMode())));
}

/// The name of a mode with a size of 0 is made of zeros that the camera never reported.
QString PModeChooser::text(const PDeviceMode& mode) {
    return mode.width > 0 && mode.height > 0
               ? mode.name
               : tr("Mode %1: size not reported").arg(QString::fromLatin1(mode.id));
}

void PModeChooser::setCondition(std::function<bool(const PViewCamera&)> condition) {
    m_condition = std::move(condition);
}

void PModeChooser::choose(int index) {
    const PDeviceMode mode = m_modes.value(index);
    const QPointer<PViewCamera> camera = m_camera; // the user may be asked, and another one come
    const bool isOther = mode != camera->device()->reportedMode();
    if (isOther && m_condition && !m_condition(*camera))
        return refresh();
    if (camera == nullptr)
        return;
    const PStatus status = camera->setMode(mode);
    if (status.isOk())
        return;
    emit refused(status.reason());
    refresh();
}

/// A notch over the tool bar would change the size of the frames, which ends a recording.
void PModeChooser::wheelEvent(QWheelEvent* event) {
    event->ignore();
}

#include "moc_PModeChooser.cpp"
