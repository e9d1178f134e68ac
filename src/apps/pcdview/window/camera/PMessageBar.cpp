// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/camera/PMessageBar.h>

#include <QPainter>

#include <algorithm>

namespace {

constexpr int sideMargin = 6;

} // namespace

PMessageBar::PMessageBar(QWidget* parent)
    : QStatusBar(parent) {
    connect(this, &QStatusBar::messageChanged, this, &QWidget::setToolTip);
}

QRect PMessageBar::messageArea() const {
    int end = width();
    const auto fields = findChildren<const QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    for (const QWidget* field : fields) {
        if (field->isVisible())
            end = std::min(end, field->x());
    }
    return rect().adjusted(sideMargin, 0, end - width() - sideMargin, 0);
}

QString PMessageBar::fittingMessage() const {
    return fontMetrics().elidedText(currentMessage(), Qt::ElideMiddle, messageArea().width());
}

void PMessageBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(messageArea(), Qt::AlignLeading | Qt::AlignVCenter | Qt::TextSingleLine,
                     fittingMessage());
}

#include "moc_PMessageBar.cpp"
