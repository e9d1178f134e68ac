// SPDX-License-Identifier: MIT
#pragma once

class PDeviceProperty;
class QWidget;

/// The library's entry: generic editors for properties, and panels of all properties of a device.
/// The GUI thread, which must be the devices' thread.
class PCdGui {
public:
    /// Puts the editors behind PDeviceProperty::createWidget() and the panel behind
    /// PDevice::createPropertiesWidget(). Any number of times.
    static void install();

    /// A new editor for a property by its kind, without a parent: a PPropertyEditor, or a label
    /// with the title for kinds that bring panels of their own. The property may die first.
    static QWidget* createEditor(PDeviceProperty* property);
};
