// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

class PDeviceProperty;
class QWidget;

/// The library's entry point: generic editors for properties, and panels of all properties of a
/// device. The GUI thread, which must be the devices' thread.
class PCD_EXPORT PCdGui {
public:
    /// Installs the editors that PDeviceProperty::createWidget() creates and the panel that
    /// PDevice::createPropertiesWidget() creates. May be called repeatedly.
    static void install();

    /// A new editor for a property of this kind, without a parent: a PPropertyEditor, or a label
    /// with the title for kinds with panels of their own. The property may be deleted before the
    /// editor.
    static QWidget* createEditor(PDeviceProperty* property);
};
