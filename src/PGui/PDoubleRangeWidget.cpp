// SPDX-License-Identifier: MIT
#include <PGui/PDoubleRangeWidget.h>

PDoubleRangeWidget::PDoubleRangeWidget(QWidget* parent)
    : PRangeWidgetBase(parent) {
}

void PDoubleRangeWidget::setRange(const PMinMaxRange<double>& range) {
    m_range = range;
    takeScale(range);
}

double PDoubleRangeWidget::value() const {
    return number();
}

void PDoubleRangeWidget::setValue(double value) {
    takeNumber(value);
}

void PDoubleRangeWidget::showValue(const PMinMaxRange<double>& range, double value) {
    m_range = range;
    showNumber(range, value);
}

void PDoubleRangeWidget::reportChange() {
    emit valueChanged(value());
}

#include "moc_PDoubleRangeWidget.cpp"
