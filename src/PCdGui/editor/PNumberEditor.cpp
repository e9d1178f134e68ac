// SPDX-License-Identifier: MIT
#include <PCdGui/editor/PNumberEditor.h>

#include <PCdGui/text/PPropertyDisplay.h>

#include <PGui/PRangeWidget.h>

#include <PCd/property/PDeviceProperty.h>

#include <limits>

namespace {

using IntRange = PMinMaxRange<int>;

constexpr IntRange anyNumber{std::numeric_limits<int>::min(), std::numeric_limits<int>::max(), 1};

} // namespace

PNumberEditor::PNumberEditor(PDeviceProperty* property)
    : PPropertyEditor(property)
    , m_control(new PRangeWidget(this)) {
    connect(m_control, &PRangeWidget::valueChanged, this, &PNumberEditor::send);
    begin(m_control, m_control);
}

void PNumberEditor::showWords() {
    m_control->setNumberText(PPropertyDisplay::numberText(*property()));
    m_control->setControlName(title());
}

void PNumberEditor::showProperty(const QVariant& value, const QVariant& range) {
    const bool ranged = range.metaType() == QMetaType::fromType<IntRange>();
    m_control->setSliderVisible(ranged);
    const IntRange numbers = ranged ? range.value<IntRange>() : anyNumber;
    if (value.isValid())
        m_control->showValue(numbers, value.toInt());
    else
        m_control->showNoValue(numbers);
}

#include "moc_PNumberEditor.cpp"
