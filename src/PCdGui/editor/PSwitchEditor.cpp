// SPDX-License-Identifier: MIT
#include <PCdGui/editor/PSwitchEditor.h>

#include <PGui/PNumberField.h>

#include <PCd/property/PDeviceProperty.h>

#include <QCheckBox>

PSwitchEditor::PSwitchEditor(PDeviceProperty* property)
    : PPropertyEditor(property)
    , m_box(new QCheckBox(this)) {
    connect(m_box, &QCheckBox::clicked, this, &PSwitchEditor::send);
    // The rows of a form are equally high, whether they have a check box or a field.
    setMinimumHeight(PNumberField().sizeHint().height());
    begin(m_box, m_box);
}

void PSwitchEditor::touch() {
    m_box->click();
}

void PSwitchEditor::showWords() {
    m_box->setAccessibleName(title());
}

void PSwitchEditor::showProperty(const QVariant& value, const QVariant&) {
    m_box->setTristate(false);
    if (value.isValid())
        m_box->setChecked(value.toBool());
    else
        m_box->setCheckState(Qt::PartiallyChecked);
}

#include "moc_PSwitchEditor.cpp"
