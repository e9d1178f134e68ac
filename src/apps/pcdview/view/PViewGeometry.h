// SPDX-License-Identifier: MIT
#pragma once

#include <QPointF>
#include <QRectF>
#include <QSize>

/// How a picture lies in a view: its scale and its place. Sizes and positions in device pixels of
/// the view or in pixels of the picture. A picture larger than the view leaves no gap at its edges,
/// a smaller one is centred. A value; one thread.
class PViewGeometry {
public:
    /// Device pixels for a pixel of the picture, at most.
    static constexpr double largestScale = 32;

    /// Another picture, or another view: fitted if it was, else the same part of the picture stays
    /// in the middle.
    void setPicture(QSize size);
    void setViewport(QSize size);
    QSize picture() const { return m_picture; }
    QSize viewport() const { return m_viewport; }

    /// Shows all of the picture as large as possible, now and when sizes change.
    void fit();
    bool isFit() const { return m_fit; }
    /// Sets the scale, within limits, so that what is at this position of the view stays there.
    void zoomTo(double scale, QPointF at);
    /// Moves the picture, within limits.
    void pan(QPointF by);

    /// Device pixels for a pixel of the picture.
    double scale() const { return m_scale; }
    double smallestScale() const;
    QPointF toPicture(QPointF inView) const;
    QPointF toView(QPointF inPicture) const;
    /// Where the picture lies in the view, parts outside of it included.
    QRectF pictureInView() const;

private:
    bool isReady() const { return !m_picture.isEmpty() && !m_viewport.isEmpty(); }
    double fitScale() const;
    void place(QPointF inPicture, QPointF at);
    void refit();

    QSize m_picture;
    QSize m_viewport;
    double m_scale = 1;
    QPointF m_corner; ///< of the picture, in the view
    bool m_fit = true;
};
