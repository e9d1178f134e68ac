// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/device/PDevice.h>

#include <QObject>
#include <QPointer>
#include <QWidget>

/// Tells a widget whether its device can still be used: not once it is gone, nor from being
/// unlinked until it is linked again. A device that was never linked can be used. The GUI thread.
class PDeviceWatch : public QObject {
    Q_OBJECT

public:
    /// Without a device there is nothing that could go. The widget owns the watch.
    PDeviceWatch(PDevice* device, QWidget* widget);

    bool isUsable() const { return m_usable; }
    /// Looks again, as it does by itself when the widget is shown: linking emits no signal.
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
