// SPDX-License-Identifier: MIT
#include <PCdGui/editor/PChoiceEditor.h>

#include <PCd/property/PDeviceProperty.h>

#include <QComboBox>
#include <QUuid>

namespace {

/// May be narrower than the longest title: the open list shows titles in full.
constexpr int leastCharacters = 10;

} // namespace

PChoiceEditor::PChoiceEditor(PDeviceProperty* property)
    : PPropertyEditor(property)
    , m_box(new QComboBox(this)) {
    m_box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_box->setMinimumContentsLength(leastCharacters);
    m_box->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(m_box, &QComboBox::activated, this, [this](int i) { send(m_box->itemData(i)); });
    begin(m_box, m_box);
}

void PChoiceEditor::showWords() {
    m_box->setAccessibleName(title());
    // Shown if the device's value is not among the choices.
    m_box->setPlaceholderText(tr("(unknown)"));
}

void PChoiceEditor::showProperty(const QVariant& value, const QVariant& range) {
    showChoices(range.value<PEnumeration>());
    m_box->setCurrentIndex(m_box->findData(value));
}

void PChoiceEditor::showChoices(const PEnumeration& choices) {
    if (choices == m_choices)
        return;
    m_choices = choices;
    m_box->clear();
    for (const PEnumerationItem& item : choices.items())
        m_box->addItem(item.title.isEmpty() ? item.name : item.title, item.id);
}

#include "moc_PChoiceEditor.cpp"
