// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/device/PDevice.h>

#include <QObject>
#include <QPointer>
#include <QWidget>

/// Reports whether a widget's device can be used: not after it is deleted, and not between
/// unlinking and linking. A device that was never linked can be used. The GUI thread.
class PDeviceWatch : public QObject {
    Q_OBJECT

public:
    /// With a null device it is always usable. The widget owns the watch.
    PDeviceWatch(PDevice* device, QWidget* widget);

    bool isUsable() const { return m_usable; }
    /// Checks again. This also happens when the widget is shown, because linking emits no signal.
    void update();

signals:
    /// isUsable() has changed.
    void usableChanged(bool usable);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void setUsable(bool usable);
    void lose();

    QPointer<PDevice> m_device;
    bool m_usable = true;
};
