// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdview/analysis/PFrameAnalysis.h>

#include <QWidget>

class QPainter;

/// Draws the histogram of a picture: a curve for grey, and one for each colour. The GUI thread.
class PHistogramWidget : public QWidget {
    Q_OBJECT

public:
    explicit PHistogramWidget(QWidget* parent = nullptr);

    /// Shows the counts of this analysis; an empty one clears it.
    void setAnalysis(const PFrameAnalysis& analysis);
    /// Draws the heights on a logarithmic scale, so that small counts are visible.
    void setLogarithmic(bool logarithmic);

    /// The height of a level's bar, 0 to 1 of the highest.
    double barHeight(std::size_t channel, std::size_t level) const;

    QSize sizeHint() const override { return {280, 140}; }
    QSize minimumSizeHint() const override { return {140, 80}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void paintGrid(QPainter& painter, const QRectF& area) const;
    double height(quint64 pixels) const;
    void paintCounts(QPainter& painter, const QRectF& area, const PFrameAnalysis::Counts& counts,
                     QColor color) const;

    PFrameAnalysis m_analysis;
    quint64 m_highest = 0;
    bool m_logarithmic = false;
};
