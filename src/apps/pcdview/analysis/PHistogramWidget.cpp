// SPDX-License-Identifier: MIT
#include <apps/pcdview/analysis/PHistogramWidget.h>

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace {

constexpr int levelCount = 256;

QColor channelColor(std::size_t channel, bool isGrey, const QPalette& palette) {
    if (isGrey)
        return palette.color(QPalette::Text);
    return std::array{QColor(220, 50, 47), QColor(60, 160, 60), QColor(50, 110, 230)}[channel];
}

} // namespace

PHistogramWidget::PHistogramWidget(QWidget* parent)
    : QWidget(parent) {
    setAccessibleName(tr("Histogram"));
}

void PHistogramWidget::setAnalysis(const PFrameAnalysis& analysis) {
    m_analysis = analysis;
    m_highest = 0;
    // The end levels include all clipped samples and would flatten everything else.
    const auto look = [this](const PFrameAnalysis::Counts& counts) {
        m_highest = std::max(m_highest, *std::max_element(counts.begin() + 1, counts.end() - 1));
    };
    std::for_each(analysis.channels.begin(), analysis.channels.end(), look);
    look(analysis.luma);
    update();
}

void PHistogramWidget::setLogarithmic(bool logarithmic) {
    m_logarithmic = logarithmic;
    update();
}

double PHistogramWidget::barHeight(std::size_t channel, std::size_t level) const {
    return height(m_analysis.channels[channel][level]);
}

double PHistogramWidget::height(quint64 pixels) const {
    const auto count = double(pixels);
    const auto highest = double(std::max<quint64>(m_highest, 1));
    const double height = m_logarithmic ? std::log1p(count) / std::log1p(highest) : count / highest;
    return std::min(height, 1.0);
}

void PHistogramWidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Base));
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF area = QRectF(rect()).adjusted(4, 4, -4, -4);
    paintGrid(painter, area);
    if (m_analysis.pixels == 0)
        return;
    if (!m_analysis.isGrey())
        paintCounts(painter, area, m_analysis.luma, palette().color(QPalette::PlaceholderText));
    for (std::size_t channel = 0; channel < m_analysis.channels.size(); ++channel)
        paintCounts(painter, area, m_analysis.channels[channel],
                    channelColor(channel, m_analysis.isGrey(), palette()));
}

void PHistogramWidget::paintGrid(QPainter& painter, const QRectF& area) const {
    painter.setPen(QPen(palette().color(QPalette::Midlight), 1, Qt::DotLine));
    for (int quarter = 0; quarter <= 4; ++quarter) {
        const double x = area.left() + area.width() * quarter / 4;
        painter.drawLine(QPointF(x, area.top()), QPointF(x, area.bottom()));
    }
    painter.drawLine(area.bottomLeft(), area.bottomRight());
}

void PHistogramWidget::paintCounts(QPainter& painter, const QRectF& area,
                                   const PFrameAnalysis::Counts& counts, QColor color) const {
    QPainterPath path(area.bottomLeft());
    for (int level = 0; level < levelCount; ++level) {
        const double x = area.left() + area.width() * level / (levelCount - 1);
        path.lineTo(x, area.bottom() - area.height() * height(counts[std::size_t(level)]));
    }
    path.lineTo(area.bottomRight());
    painter.setPen(QPen(color, 1.2));
    color.setAlpha(60);
    painter.setBrush(color);
    painter.drawPath(path);
}

#include "moc_PHistogramWidget.cpp"
