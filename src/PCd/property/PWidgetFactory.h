// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

class PDevice;
class PDeviceProperty;
class QWidget;

/// Where a library with editors installs them, so that this one needs none. The GUI thread.
class PWidgetFactory {
public:
    using PropertyEditor = std::function<QWidget*(PDeviceProperty*)>;
    using DevicePanel = std::function<QWidget*(PDevice*, QWidget* parent)>;

    /// Installs what makes an editor for a property; an empty function takes it away.
    static void setPropertyEditor(PropertyEditor editor);
    /// Installs what makes a panel of all properties of a device; likewise.
    static void setDevicePanel(DevicePanel panel);

    /// A new editor, or a plain label with the property's title if none is installed.
    static QWidget* createPropertyEditor(PDeviceProperty* property);
    /// A new panel, or null if none is installed.
    static QWidget* createDevicePanel(PDevice* device, QWidget* parent);
};
