// SPDX-License-Identifier: MIT
#include <PCdGui/editor/PDeviceWatch.h>

#include <QEvent>

PDeviceWatch::PDeviceWatch(PDevice* device, QWidget* widget)
    : QObject(widget)
    , m_device(device) {
    if (device == nullptr)
        return;
    m_usable = !device->isGone();
    widget->installEventFilter(this);
    connect(device, &PDevice::unlinked, this, &PDeviceWatch::lose);
    connect(device, &QObject::destroyed, this, &PDeviceWatch::lose);
}

void PDeviceWatch::lose() {
    setUsable(false);
}

void PDeviceWatch::update() {
    if (m_device && m_device->isLinked())
        setUsable(!m_device->isGone());
}

bool PDeviceWatch::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Show)
        update();
    return QObject::eventFilter(watched, event);
}

void PDeviceWatch::setUsable(bool usable) {
    if (usable == m_usable)
        return;
    m_usable = usable;
    emit usableChanged(usable);
}

#include "moc_PDeviceWatch.cpp"
