// SPDX-License-Identifier: MIT
#include <PGui/PColumnScroll.h>

#include <QEvent>
#include <QScrollBar>

PColumnScroll::PColumnScroll(QWidget* parent)
    : QScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

bool PColumnScroll::eventFilter(QObject* watched, QEvent* event) {
    const bool handled = QScrollArea::eventFilter(watched, event);
    // When the column becomes wider, the scroll area must too.
    if (watched == widget() && event->type() == QEvent::LayoutRequest)
        updateGeometry();
    return handled;
}

int PColumnScroll::leastWidth() const {
    if (widget() == nullptr)
        return 0;
    const QSize column = widget()->minimumSizeHint().expandedTo(widget()->minimumSize());
    return column.width() + verticalScrollBar()->sizeHint().width() + 2 * frameWidth();
}

QSize PColumnScroll::sizeHint() const {
    return QSize(leastWidth(), QScrollArea::sizeHint().height());
}

QSize PColumnScroll::minimumSizeHint() const {
    return QSize(leastWidth(), QScrollArea::minimumSizeHint().height());
}

#include "moc_PColumnScroll.cpp"
