// SPDX-License-Identifier: MIT
#pragma once

#include <QPointF>
#include <QRectF>
#include <QSize>

/// The scale and position of a picture in a view. Sizes and positions are in device pixels of the
/// view or in pixels of the picture. A picture larger than the view leaves no gap at its edges, a
/// smaller one is centred. A value type; one thread.
class PViewGeometry {
public:
    /// Device pixels per pixel of the picture, at most.
    static constexpr double largestScale = 32;

    /// Sets the size of another picture, or of the view: fitted if it was before, otherwise the
    /// same part of the picture stays in the middle.
    void setPicture(QSize size);
    void setViewport(QSize size);
    QSize picture() const { return m_picture; }
    QSize viewport() const { return m_viewport; }

    /// Shows the whole picture as large as possible, now and when sizes change.
    void fit();
    /// Sets the scale, within limits, so that what is at this position of the view stays there.
    void zoomTo(double scale, QPointF at);
    /// Moves the picture, within limits.
    void pan(QPointF by);

    /// Device pixels per pixel of the picture.
    double scale() const { return m_scale; }
    double smallestScale() const;
    QPointF toPicture(QPointF inView) const;
    QPointF toView(QPointF inPicture) const;
    /// The picture's rectangle in the view, including parts outside of it.
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
