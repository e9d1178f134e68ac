// SPDX-License-Identifier: MIT
#pragma once

#include <PGui/PNumberField.h>
#include <PGui/PRangeSlider.h>

#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QWheelEvent>

// The user's actions on a widget, as events.

/// The line that a field types into.
inline QLineEdit* findLineEdit(const QWidget* field) {
    return field->findChild<QLineEdit*>();
}

inline QString shownText(const QWidget* field) {
    return findLineEdit(field)->text();
}

/// Replaces the text in a field by typing, without committing it.
inline void typeInto(QWidget* field, const QString& text) {
    field->setFocus();
    findLineEdit(field)->selectAll();
    QTest::keyClicks(field, text);
}

/// Replaces the text in a field by typing, and presses Enter.
inline void enter(QWidget* field, const QString& text) {
    typeInto(field, text);
    QTest::keyClick(field, Qt::Key_Return);
}

/// Turns the wheel over a widget by notches; up if positive.
inline void turnWheel(QWidget* over, int notches, Qt::KeyboardModifiers modifiers = {}) {
    const QPointF place(over->rect().center());
    QWheelEvent event(place, over->mapToGlobal(place), QPoint(),
                      QPoint(0, notches * QWheelEvent::DefaultDeltasPerStep), Qt::NoButton,
                      modifiers, Qt::NoScrollPhase, false);
    // Qt passes only spontaneous events on to the parents of a widget that ignores them, and
    // sendEvent() would mark it as not spontaneous.
    QSpontaneKeyEvent::setSpontaneous(&event);
    qApp->notify(over, &event);
}

/// Shows a window and gives it the focus.
inline bool showActive(QWidget* window) {
    window->show();
    window->activateWindow();
    return QTest::qWaitForWindowActive(window);
}
