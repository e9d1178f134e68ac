// SPDX-License-Identifier: MIT
#include <PCd/property/PWidgetFactory.h>

#include <PCd/property/PDeviceProperty.h>

#include <QLabel>

namespace {

PWidgetFactory::PropertyEditor& propertyEditor() {
    static PWidgetFactory::PropertyEditor editor;
    return editor;
}

PWidgetFactory::DevicePanel& devicePanel() {
    static PWidgetFactory::DevicePanel panel;
    return panel;
}

} // namespace

void PWidgetFactory::setPropertyEditor(PropertyEditor editor) {
    propertyEditor() = std::move(editor);
}

void PWidgetFactory::setDevicePanel(DevicePanel panel) {
    devicePanel() = std::move(panel);
}

QWidget* PWidgetFactory::createPropertyEditor(PDeviceProperty* property) {
    if (const PropertyEditor& create = propertyEditor())
        return create(property);
    return new QLabel(property->title());
}

QWidget* PWidgetFactory::createDevicePanel(PDevice* device, QWidget* parent) {
    const DevicePanel& create = devicePanel();
    return create ? create(device, parent) : nullptr;
}
