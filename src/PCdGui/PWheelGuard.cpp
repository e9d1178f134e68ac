// SPDX-License-Identifier: MIT
#include <PCdGui/PWheelGuard.h>

#include <PGui/PRangeWidgetBase.h>

#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QScrollBar>

namespace {

bool takesWheel(const QWidget* widget) {
    if (qobject_cast<const QScrollBar*>(widget) != nullptr)
        return false;
    return qobject_cast<const QAbstractSlider*>(widget) != nullptr ||
           qobject_cast<const QAbstractSpinBox*>(widget) != nullptr ||
           qobject_cast<const QComboBox*>(widget) != nullptr;
}

/// A range widget's slider and field count as one.
bool hasFocus(const QWidget* control) {
    const auto* const whole = qobject_cast<const PRangeWidgetBase*>(control->parentWidget());
    const QWidget* const focused = QApplication::focusWidget();
    return control->hasFocus() ||
           (whole != nullptr && focused != nullptr && whole->isAncestorOf(focused));
}

} // namespace

PWheelGuard::PWheelGuard(QWidget* page)
    : QObject(page) {
    const QList<QWidget*> widgets = page->findChildren<QWidget*>();
    for (QWidget* widget : widgets) {
        if (!takesWheel(widget))
            continue;
        widget->installEventFilter(this);
        // The wheel would set the focus before the event is filtered here.
        if (widget->focusPolicy() == Qt::WheelFocus)
            widget->setFocusPolicy(Qt::StrongFocus);
    }
}

bool PWheelGuard::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::Wheel || hasFocus(static_cast<QWidget*>(watched)))
        return QObject::eventFilter(watched, event);
    event->ignore(); // so that it reaches the page
    return true;
}

#include "moc_PWheelGuard.cpp"
