// SPDX-License-Identifier: MIT
#include <PGui/PRangeSlider.h>

#include <QSignalBlocker>
#include <QWheelEvent>

#include <algorithm>

namespace {

constexpr int stepsOfAFastNotch = 10;

} // namespace

PRangeSlider::PRangeSlider(QWidget* parent)
    : QSlider(Qt::Horizontal, parent) {
    connect(this, &QSlider::valueChanged, this, &PRangeSlider::onPosition);
    connect(this, &QSlider::actionTriggered, this, &PRangeSlider::onAction);
    connect(this, &QSlider::sliderReleased, this, &PRangeSlider::place);
    setScale(m_scale);
}

PRangeSlider::~PRangeSlider() = default;

void PRangeSlider::setScale(const PRangeScale& scale) {
    m_scale = scale;
    const QSignalBlocker silent(this);
    setRange(0, scale.lastPosition());
    setPageStep(std::max(1, scale.lastPosition() / 10));
    place();
}

void PRangeSlider::showValue(double value) {
    m_value = value;
    if (!isSliderDown())
        place();
}

void PRangeSlider::place() {
    const QSignalBlocker silent(this);
    setValue(m_scale.toPosition(m_value));
}

void PRangeSlider::pick(double value) {
    const bool differs = value != m_value;
    showValue(value);
    if (differs)
        emit valuePicked(value);
}

void PRangeSlider::onPosition(int position) {
    pick(m_scale.valueAt(position));
}

void PRangeSlider::onAction(int action) {
    // Keys and clicks beside the handle step the value, not the position: on a fine scale many
    // values share a position, on a logarithmic one several positions share a value.
    switch (action) {
    case SliderSingleStepAdd:
        return step(1);
    case SliderSingleStepSub:
        return step(-1);
    case SliderPageStepAdd:
        return page(1);
    case SliderPageStepSub:
        return page(-1);
    case SliderToMinimum:
        return pick(m_scale.minimum());
    case SliderToMaximum:
        return pick(m_scale.maximum());
    default:
        return;
    }
}

void PRangeSlider::step(int count) {
    if (m_scale.skipsValues())
        go(m_scale.valueAt(m_scale.toPosition(m_value) + count), count);
    else
        pick(m_scale.stepped(m_value, count));
}

void PRangeSlider::page(int direction) {
    go(m_scale.valueAt(m_scale.toPosition(m_value) + direction * pageStep()), direction);
}

void PRangeSlider::go(double target, int direction) {
    const bool ahead = direction > 0 ? target > m_value : target < m_value;
    pick(ahead ? target : m_scale.stepped(m_value, direction > 0 ? 1 : -1));
}

void PRangeSlider::wheelEvent(QWheelEvent* event) {
    const QPoint turned = event->angleDelta();
    m_wheelRest += turned.y() != 0 ? turned.y() : turned.x();
    const int notches = m_wheelRest / QWheelEvent::DefaultDeltasPerStep;
    m_wheelRest -= notches * QWheelEvent::DefaultDeltasPerStep;
    const bool fast = (event->modifiers() & (Qt::ControlModifier | Qt::ShiftModifier)) != 0;
    if (notches != 0)
        step(fast ? notches * stepsOfAFastNotch : notches);
    event->accept();
}

#include "moc_PRangeSlider.cpp"
