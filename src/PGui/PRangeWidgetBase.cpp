// SPDX-License-Identifier: MIT
#include <PGui/PRangeWidgetBase.h>

#include <PGui/PNumberField.h>
#include <PGui/PRangeSlider.h>

#include <QHBoxLayout>

#include <cmath>
#include <limits>

namespace {

/// Wide enough to aim with the mouse, and narrow enough for a panel at the window's edge.
constexpr int leastSliderWidth = 80;

bool isFinite(const PMinMaxRange<double>& range) {
    return std::isfinite(range.minimum) && std::isfinite(range.maximum) &&
           std::isfinite(range.step);
}

} // namespace

PRangeWidgetBase::PRangeWidgetBase(QWidget* parent)
    : QWidget(parent)
    , m_slider(new PRangeSlider(this))
    , m_field(new PNumberField(this)) {
    m_slider->setMinimumWidth(leastSliderWidth);
    // Tab stops once: the field handles all keys of the slider.
    m_slider->setFocusPolicy(Qt::ClickFocus);
    setFocusProxy(m_field);
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_slider, 1);
    layout->addWidget(m_field);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(m_slider, &PRangeSlider::valuePicked, this, &PRangeWidgetBase::change);
    connect(m_field, &PNumberField::valueEdited, this, &PRangeWidgetBase::change);
    connect(m_slider, &QAbstractSlider::sliderReleased, this,
            [this] { m_slider->setEnabled(std::isfinite(m_number)); });
}

PRangeWidgetBase::~PRangeWidgetBase() = default;

void PRangeWidgetBase::setSuffix(const QString& suffix) {
    setNumberText(std::make_shared<PNumberText>(suffix));
}

void PRangeWidgetBase::setNumberText(std::shared_ptr<const PNumberText> text) {
    m_field->setNumberText(std::move(text));
}

void PRangeWidgetBase::setControlName(const QString& name) {
    setAccessibleName(name);
    m_slider->setAccessibleName(name);
    m_field->setAccessibleName(name);
}

void PRangeWidgetBase::setSliderVisible(bool visible) {
    m_slider->setVisible(visible);
}

void PRangeWidgetBase::takeScale(const PMinMaxRange<double>& range) {
    if (!isFinite(range))
        return;
    spreadScale(range);
    if (std::isfinite(m_number))
        change(m_scale.snapped(m_number));
}

void PRangeWidgetBase::takeNumber(double number) {
    if (std::isfinite(number))
        change(m_scale.snapped(number));
}

void PRangeWidgetBase::showNumber(const PMinMaxRange<double>& range, double number) {
    if (!isFinite(range) || !std::isfinite(number))
        return;
    spreadScale(range);
    m_number = number;
    m_slider->setEnabled(true);
    m_slider->showValue(number);
    m_field->showValue(number);
}

void PRangeWidgetBase::showNoNumber(const PMinMaxRange<double>& range) {
    if (isFinite(range))
        spreadScale(range);
    m_number = std::numeric_limits<double>::quiet_NaN();
    m_slider->setEnabled(m_slider->isSliderDown()); // the mouse would lose the handle
    m_field->showValue(m_number);
}

void PRangeWidgetBase::spreadScale(const PMinMaxRange<double>& range) {
    const PRangeScale scale(range);
    if (scale == m_scale)
        return;
    m_scale = scale;
    m_slider->setScale(scale);
    m_field->setScale(scale);
}

void PRangeWidgetBase::change(double number) {
    const bool differs = number != m_number;
    m_number = number;
    m_slider->setEnabled(true);
    m_slider->showValue(number);
    m_field->showValue(number);
    if (differs)
        reportChange();
}

#include "moc_PRangeWidgetBase.cpp"
