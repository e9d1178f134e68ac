// SPDX-License-Identifier: MIT
#include <PCdGui/editor/PActionEditor.h>

#include <PCdGui/text/PPropertyDisplay.h>

#include <PCd/property/PDeviceProperty.h>

#include <QPushButton>

PActionEditor::PActionEditor(PDeviceProperty* property)
    : PPropertyEditor(property)
    , m_button(new QPushButton(this)) {
    // Enter in a field of a dialog must not run a camera command.
    m_button->setAutoDefault(false);
    connect(m_button, &QPushButton::clicked, this, &PActionEditor::run);
    begin(m_button, m_button);
}

void PActionEditor::showWords() {
    m_button->setText(PPropertyDisplay::plainTitle(title()));
    m_button->setAccessibleName(title());
}

void PActionEditor::run() {
    if (PDeviceProperty* const command = property())
        command->setValue(QVariant());
}

void PActionEditor::showProperty(const QVariant&, const QVariant&) {
}

#include "moc_PActionEditor.cpp"
