// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/camera/PMessageBar.h>

#include <QPainter>
#include <QRegularExpression>

#include <algorithm>

namespace {

constexpr int sideMargin = 6;
constexpr int leastOfPath = 12; // characters

/// The path in a message; folders may have spaces in their names.
QRegularExpressionMatch findPath(const QString& message) {
    static const QRegularExpression path(u"(?<![^\\s\"“«(])/[^\"”»]*/[^\\s\"”»)]*"_qs);
    return path.match(message);
}

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

/// What happened comes first in a message: only a path is shortened in its middle.
QString PMessageBar::fittingMessage() const {
    const QFontMetrics metrics = fontMetrics();
    const int room = messageArea().width();
    QString message = currentMessage();
    const QRegularExpressionMatch path = findPath(message);
    const int excess = metrics.horizontalAdvance(message) - room;
    if (excess > 0 && path.hasMatch()) {
        const QString whole = path.captured();
        const int left = std::max(metrics.horizontalAdvance(whole) - excess,
                                  metrics.averageCharWidth() * leastOfPath);
        message.replace(path.capturedStart(), path.capturedLength(),
                        metrics.elidedText(whole, Qt::ElideMiddle, left));
    }
    return metrics.elidedText(message, Qt::ElideRight, room);
}

void PMessageBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(messageArea(), Qt::AlignLeading | Qt::AlignVCenter | Qt::TextSingleLine,
                     fittingMessage());
}

#include "moc_PMessageBar.cpp"
