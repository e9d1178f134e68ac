// SPDX-License-Identifier: MIT
#include <apps/pcdview/view/PImageView.h>

#include <apps/pcdview/view/PScaleBar.h>
#include <apps/pcdview/view/PViewSampler.h>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <cmath>
#include <utility>

namespace {

constexpr double zoomStep = 1.25;    // for a key, or a notch of the wheel
constexpr double notchOfWheel = 120; // QWheelEvent: eighths of a degree, 15 degrees a notch
constexpr int noticeMargin = 16;
constexpr double scaleBarShare = 0.2; // of the view's width, at most

/// Writes a size on a dark box, as it must be readable on any picture.
void paintSize(QPainter& painter, QPointF at, QSize size) {
    const QString text =
        u"%1 × %2"_qs.arg(QString::number(size.width()), QString::number(size.height()));
    const QFontMetricsF metrics(painter.font());
    const QRectF box(at, QSizeF(metrics.horizontalAdvance(text) + 8, metrics.height() + 4));
    painter.fillRect(box, QColor(0, 0, 0, 150));
    painter.drawText(box, Qt::AlignCenter, text);
}

} // namespace

PImageView::PImageView(QWidget* parent)
    : QWidget(parent) {
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setMinimumSize(160, 120);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAccessibleName(tr("Camera picture"));
    setTool(Tool::Move);
    connect(&m_renderer, &PViewRenderer::rendered, this, &PImageView::showRendered);
}

void PImageView::setImage(const PImage& image) {
    m_image = image;
    const double scale = m_geometry.scale();
    const QSize size(int(image.width()), int(image.height()));
    // The next picture of a stream: this thread need not read it.
    const bool isPainted = isVisible() && !window()->isMinimized();
    const bool isNext = isPainted && !m_canvasIsOld && size == m_geometry.picture();
    m_geometry.setPicture(size);
    if (isNext)
        renderAside();
    else
        redraw();
    if (m_geometry.scale() != scale)
        emit zoomChanged();
    emit cursorChanged();
}

void PImageView::setStyle(const PViewStyle& style) {
    if (style == m_style)
        return;
    m_style = style;
    redraw();
}

void PImageView::setTool(Tool tool) {
    m_tool = tool;
    m_pressed = false;
    showCursor();
    update();
}

void PImageView::setPixelSize(double micrometres) {
    m_pixelSize = micrometres;
    update();
}

void PImageView::setStale(bool stale) {
    m_stale = stale;
    update();
}

void PImageView::setNotice(const QString& notice) {
    m_notice = notice;
    setAccessibleDescription(notice);
    update();
}

std::optional<PPixelValue> PImageView::pixelUnderCursor() const {
    if (m_cursor.x() < 0 || m_image.isNull())
        return std::nullopt;
    const QPointF at = m_geometry.toPicture(m_cursor);
    return PPixelValue::of(m_image, {int(std::floor(at.x())), int(std::floor(at.y()))});
}

void PImageView::fit() {
    m_geometry.fit();
    changeView();
}

void PImageView::actualSize() {
    const QPointF middle(m_geometry.viewport().width() / 2.0, m_geometry.viewport().height() / 2.0);
    m_geometry.zoomTo(1, middle);
    changeView();
}

void PImageView::zoomIn() {
    zoomBy(zoomStep, inDevicePixels(rect().center()));
}

void PImageView::zoomOut() {
    zoomBy(1 / zoomStep, inDevicePixels(rect().center()));
}

void PImageView::zoomBy(double factor, QPointF at) {
    m_geometry.zoomTo(m_geometry.scale() * factor, at);
    changeView();
}

void PImageView::changeView() {
    redraw();
    emit zoomChanged();
    emit cursorChanged();
}

void PImageView::redraw() {
    m_canvasIsOld = true;
    m_renderer.forget();
    update();
}

void PImageView::renderAside() {
    m_isBehind = true;
    m_renderer.offer({m_image, m_geometry, m_style, palette().color(QPalette::Mid)});
}

void PImageView::showRendered(const QImage& canvas, bool isNewest) {
    m_renderer.reuse(std::exchange(m_canvas, canvas));
    m_canvas.setDevicePixelRatio(devicePixelRatioF());
    m_isBehind = !isNewest;
    m_isRendered = true;
    update();
}

/// Makes the canvas that is painted now. Whatever else is the reason for painting, the newest
/// picture is shown, except where pictures arrive faster than they can be rendered.
void PImageView::prepareCanvas() {
    const bool isRendered = std::exchange(m_isRendered, false);
    if (!m_canvasIsOld && (!m_isBehind || isRendered))
        return;
    m_renderer.forget();
    m_canvas = PViewSampler::render(m_image, m_geometry, m_style, palette().color(QPalette::Mid),
                                    std::move(m_canvas));
    m_canvas.setDevicePixelRatio(devicePixelRatioF());
    m_canvasIsOld = false;
    m_isBehind = false;
}

void PImageView::paintEvent(QPaintEvent*) {
    prepareCanvas();
    QPainter painter(this);
    painter.drawImage(QPointF(), m_canvas);
    if (m_stale && !m_image.isNull())
        painter.fillRect(rect(), QColor(128, 128, 128, 110));
    painter.setRenderHint(QPainter::Antialiasing);
    paintNotice(painter);
    paintRegion(painter);
    paintScaleBar(painter);
}

void PImageView::paintNotice(QPainter& painter) const {
    if (!m_image.isNull())
        return;
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(rect().adjusted(noticeMargin, noticeMargin, -noticeMargin, -noticeMargin),
                     Qt::AlignCenter | Qt::TextWordWrap, m_notice);
}

void PImageView::paintRegion(QPainter& painter) const {
    if (m_tool != Tool::Region || !m_pressed)
        return;
    const QRect region = drawnRegion();
    const double ratio = devicePixelRatioF();
    const QRectF box(m_geometry.toView(region.topLeft()) / ratio,
                     QSizeF(region.size()) * m_geometry.scale() / ratio);
    painter.setBrush(QColor(255, 255, 255, 40));
    painter.setPen(QPen(Qt::black, 3));
    painter.drawRect(box);
    painter.setPen(QPen(Qt::white, 1));
    painter.drawRect(box);
    paintSize(painter, box.topLeft() + QPointF(4, 4), region.size());
}

void PImageView::paintScaleBar(QPainter& painter) const {
    if (m_image.isNull())
        return;
    const double micrometres = m_pixelSize * devicePixelRatioF() / m_geometry.scale();
    PScaleBar::of(micrometres, width() * scaleBarShare).paint(painter, rect());
}

void PImageView::resizeEvent(QResizeEvent*) {
    m_geometry.setViewport((QSizeF(size()) * devicePixelRatioF()).toSize());
    changeView();
}

void PImageView::wheelEvent(QWheelEvent* event) {
    const double notches = event->angleDelta().y() / notchOfWheel;
    zoomBy(std::pow(zoomStep, notches), inDevicePixels(event->position()));
    event->accept();
}

void PImageView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || m_image.isNull())
        return;
    m_pressed = true;
    m_cursor = inDevicePixels(event->position());
    m_regionStart = m_geometry.toPicture(m_cursor);
    showCursor();
}

void PImageView::mouseMoveEvent(QMouseEvent* event) {
    const QPointF before = m_cursor;
    m_cursor = inDevicePixels(event->position());
    if (m_pressed && m_tool == Tool::Move) {
        m_geometry.pan(m_cursor - before);
        redraw();
    } else if (m_pressed) {
        update();
    }
    emit cursorChanged();
}

void PImageView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !m_pressed)
        return;
    m_cursor = inDevicePixels(event->position());
    m_pressed = false;
    showCursor();
    if (m_tool == Tool::Region)
        finishRegion();
}

void PImageView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && m_tool == Tool::Move)
        emit fullScreenRequested();
}

void PImageView::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Escape || m_tool != Tool::Region)
        return QWidget::keyPressEvent(event);
    setTool(Tool::Move);
    emit regionCancelled();
}

void PImageView::leaveEvent(QEvent*) {
    m_cursor = {-1, -1};
    emit cursorChanged();
}

void PImageView::finishRegion() {
    const QRect region = drawnRegion();
    update();
    if (!region.isEmpty())
        emit regionDrawn(region);
}

QRect PImageView::drawnRegion() const {
    const QRectF drawn = QRectF(m_regionStart, m_geometry.toPicture(m_cursor)).normalized();
    return drawn.toRect().intersected(QRect(QPoint(), m_geometry.picture()));
}

void PImageView::showCursor() {
    if (m_tool == Tool::Region)
        setCursor(Qt::CrossCursor);
    else
        setCursor(m_pressed ? Qt::ClosedHandCursor : Qt::ArrowCursor);
}

#include "moc_PImageView.cpp"
