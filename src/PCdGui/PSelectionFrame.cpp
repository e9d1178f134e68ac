// SPDX-License-Identifier: MIT
#include <PCdGui/PSelectionFrame.h>

#include <QEvent>
#include <QPainter>
#include <QPushButton>

namespace {

constexpr int thickness = 2;
constexpr int footThickness = 4;

} // namespace

void PSelectionFrame::addTo(const QWidget& page) {
    const QList<QPushButton*> buttons = page.findChildren<QPushButton*>();
    for (QPushButton* button : buttons) {
        if (button->isCheckable() && button->autoExclusive())
            new PSelectionFrame(button);
    }
}

PSelectionFrame::PSelectionFrame(QPushButton* button)
    : QWidget(button) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    resize(button->size());
    setVisible(button->isChecked());
    button->installEventFilter(this);
    connect(button, &QPushButton::toggled, this, &QWidget::setVisible);
}

bool PSelectionFrame::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize)
        resize(parentWidget()->size());
    return QWidget::eventFilter(watched, event);
}

void PSelectionFrame::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QColor color =
        palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::Highlight);
    const QRect inside = rect().adjusted(thickness, thickness, -thickness, -footThickness);
    painter.setClipRegion(QRegion(rect()) - inside);
    painter.fillRect(rect(), color);
}

#include "moc_PSelectionFrame.cpp"
