// SPDX-License-Identifier: MIT
#include <PGui/PRangeWidget.h>

#include <algorithm>
#include <cmath>

namespace {

PMinMaxRange<double> asDouble(const PMinMaxRange<int>& range) {
    return {double(range.minimum), double(range.maximum), double(std::max(1, range.step))};
}

} // namespace

PRangeWidget::PRangeWidget(QWidget* parent)
    : PRangeWidgetBase(parent) {
}

void PRangeWidget::setRange(const PMinMaxRange<int>& range) {
    m_range = range;
    takeScale(asDouble(range));
}

int PRangeWidget::value() const {
    return std::isfinite(number()) ? int(std::lround(number())) : 0;
}

void PRangeWidget::setValue(int value) {
    takeNumber(value);
}

void PRangeWidget::showValue(const PMinMaxRange<int>& range, int value) {
    m_range = range;
    showNumber(asDouble(range), value);
}

void PRangeWidget::showNoValue(const PMinMaxRange<int>& range) {
    m_range = range;
    showNoNumber(asDouble(range));
}

void PRangeWidget::reportChange() {
    emit valueChanged(value());
}

#include "moc_PRangeWidget.cpp"
