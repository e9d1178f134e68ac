// SPDX-License-Identifier: MIT
#include <apps/pcdview/view/PViewGeometry.h>

#include <algorithm>

namespace {

QPointF centerPoint(QSize size) {
    return {size.width() / 2.0, size.height() / 2.0};
}

/// The corner's position along one axis, within the limits.
double limited(double corner, double length, double room) {
    return length <= room ? (room - length) / 2 : std::clamp(corner, room - length, 0.0);
}

} // namespace

void PViewGeometry::setPicture(QSize size) {
    if (size == m_picture)
        return;
    const bool wasReady = isReady();
    const QPointF middle = toPicture(centerPoint(m_viewport));
    const QSize before = m_picture;
    m_picture = size;
    if (m_fit || !wasReady || !isReady())
        return refit();
    // Keeps the same field of view, whatever its number of pixels now.
    const double growth = double(size.width()) / before.width();
    m_scale = std::clamp(m_scale / growth, smallestScale(), largestScale);
    place({middle.x() * growth, middle.y() * size.height() / before.height()},
          centerPoint(m_viewport));
}

void PViewGeometry::setViewport(QSize size) {
    if (size == m_viewport)
        return;
    const bool wasReady = isReady();
    const QPointF middle = toPicture(centerPoint(m_viewport));
    m_viewport = size;
    if (m_fit || !wasReady || !isReady())
        return refit();
    m_scale = std::max(m_scale, smallestScale());
    place(middle, centerPoint(size));
}

void PViewGeometry::fit() {
    m_fit = true;
    refit();
}

void PViewGeometry::zoomTo(double scale, QPointF at) {
    if (!isReady())
        return;
    const QPointF point = toPicture(at);
    m_fit = false;
    m_scale = std::clamp(scale, smallestScale(), largestScale);
    place(point, at);
}

void PViewGeometry::pan(QPointF by) {
    if (isReady())
        place({0, 0}, m_corner + by);
}

double PViewGeometry::smallestScale() const {
    return std::min(fitScale(), 1.0);
}

QPointF PViewGeometry::toPicture(QPointF inView) const {
    return (inView - m_corner) / m_scale;
}

QPointF PViewGeometry::toView(QPointF inPicture) const {
    return inPicture * m_scale + m_corner;
}

QRectF PViewGeometry::pictureInView() const {
    return {m_corner, QSizeF(m_picture) * m_scale};
}

double PViewGeometry::fitScale() const {
    if (!isReady())
        return 1;
    return std::min({double(m_viewport.width()) / m_picture.width(),
                     double(m_viewport.height()) / m_picture.height(), largestScale});
}

void PViewGeometry::place(QPointF inPicture, QPointF at) {
    const QPointF corner = at - inPicture * m_scale;
    m_corner = {limited(corner.x(), m_picture.width() * m_scale, m_viewport.width()),
                limited(corner.y(), m_picture.height() * m_scale, m_viewport.height())};
}

void PViewGeometry::refit() {
    m_scale = fitScale();
    place(centerPoint(m_picture), centerPoint(m_viewport));
}
