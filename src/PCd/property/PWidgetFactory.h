// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <functional>

class PDevice;
class PDeviceProperty;
class QWidget;

/// Where a library with editors registers them, so that this library needs no widgets. The GUI
/// thread.
class PCD_EXPORT PWidgetFactory {
public:
    using PropertyEditor = std::function<QWidget*(PDeviceProperty*)>;
    using DevicePanel = std::function<QWidget*(PDevice*, QWidget* parent)>;

    /// Installs the function that creates an editor for a property; an empty function removes it.
    static void setPropertyEditor(PropertyEditor editor);
    /// The same for a panel of all properties of a device.
    static void setDevicePanel(DevicePanel panel);

    /// A new editor, or a plain label with the property's title if none is installed.
    static QWidget* createPropertyEditor(PDeviceProperty* property);
    /// A new panel, or null if none is installed.
    static QWidget* createDevicePanel(PDevice* device, QWidget* parent);
};
