// SPDX-License-Identifier: MIT
#include <PCdGui/PPropertyLabel.h>

#include <PCdGui/editor/PPropertyEditor.h>
#include <PCdGui/text/PPropertyDisplay.h>

#include <QCoreApplication>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QToolTip>

PPropertyLabel::PPropertyLabel(const QString& title, PPropertyEditor* editor)
    : m_editor(editor) {
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setTitle(title);
    setBuddy(editor); // with a buddy, "&&" is shown as one "&"
    setEnabled(editor->isEnabled());
    editor->installEventFilter(this);
}

void PPropertyLabel::setTitle(const QString& title) {
    setText(PPropertyDisplay::plainTitle(title));
}

/// A form layout gives a wrapping label one line less than it needs.
QSize PPropertyLabel::inLines(QSize hint) const {
    if (minimumWidth() > 0)
        hint.setHeight(heightForWidth(minimumWidth()));
    return hint;
}

QSize PPropertyLabel::sizeHint() const {
    return inLines(QLabel::sizeHint());
}

QSize PPropertyLabel::minimumSizeHint() const {
    return inLines(QLabel::minimumSizeHint());
}

bool PPropertyLabel::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip)
        return QLabel::event(event);
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), m_editor->toolTip(), this);
    return true;
}

bool PPropertyLabel::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::EnabledChange)
        setEnabled(m_editor->isEnabled());
    return QLabel::eventFilter(watched, event);
}

void PPropertyLabel::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        m_editor->touch();
}

void PPropertyLabel::contextMenuEvent(QContextMenuEvent* event) {
    QCoreApplication::sendEvent(m_editor, event);
}

#include "moc_PPropertyLabel.cpp"
