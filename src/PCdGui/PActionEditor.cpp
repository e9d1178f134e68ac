// SPDX-License-Identifier: MIT
#include <PCdGui/PActionEditor.h>

#include <PCdGui/PPropertyWords.h>

#include <PCd/PDeviceProperty.h>

#include <QPushButton>

PActionEditor::PActionEditor(PDeviceProperty* property)
    : PPropertyEditor(property) {
    auto* const button = new QPushButton(PPropertyWords::plainTitle(property->title()), this);
    button->setAccessibleName(property->title());
    // Enter in a dialog's field must not run a command of the camera.
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, &PActionEditor::run);
    begin(button, button);
}

void PActionEditor::run() {
    if (PDeviceProperty* const command = property())
        command->setValue(QVariant());
}

void PActionEditor::showProperty(const QVariant&, const QVariant&) {
}
