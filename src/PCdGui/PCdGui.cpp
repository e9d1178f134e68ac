// SPDX-License-Identifier: MIT
#include <PCdGui/PCdGui.h>

#include <PCdGui/PDevicePanel.h>
#include <PCdGui/editor/PActionEditor.h>
#include <PCdGui/editor/PChoiceEditor.h>
#include <PCdGui/editor/PNumberEditor.h>
#include <PCdGui/editor/PRegionEditor.h>
#include <PCdGui/editor/PSwitchEditor.h>

#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PWidgetFactory.h>

#include <QLabel>

void PCdGui::install() {
    PWidgetFactory::setPropertyEditor(&PCdGui::createEditor);
    PWidgetFactory::setDevicePanel(
        [](PDevice* device, QWidget* parent) { return new PDevicePanel(device, parent); });
}

QWidget* PCdGui::createEditor(PDeviceProperty* property) {
    switch (property->type()) {
    case PCD::DevicePropertyType::Switch:
        return new PSwitchEditor(property);
    case PCD::DevicePropertyType::Integer:
    case PCD::DevicePropertyType::Duration:
        return new PNumberEditor(property);
    case PCD::DevicePropertyType::Choice:
        return new PChoiceEditor(property);
    case PCD::DevicePropertyType::Action:
        return new PActionEditor(property);
    case PCD::DevicePropertyType::ScanArea:
        return new PRegionEditor(property);
    case PCD::DevicePropertyType::Custom:
        break;
    }
    auto* const label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    label->setText(property->title());
    return label;
}
