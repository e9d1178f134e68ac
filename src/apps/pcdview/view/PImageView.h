// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdview/view/PPixelValue.h>
#include <apps/pcdview/view/PViewGeometry.h>
#include <apps/pcdview/view/PViewRenderer.h>
#include <apps/pcdview/view/PViewStyle.h>

#include <PDip/PImage.h>

#include <QImage>
#include <QWidget>

#include <optional>

/// Shows a picture: the wheel zooms to the cursor, dragging moves it, a double click requests
/// full screen. In the region tool, dragging draws a region instead. The GUI thread.
class PImageView : public QWidget {
    Q_OBJECT

public:
    /// What dragging does.
    enum class Tool { Move, Region };

    explicit PImageView(QWidget* parent = nullptr);

    /// Shows this picture, which is not copied.
    void setImage(const PImage& image);
    const PImage& image() const { return m_image; }
    void setStyle(const PViewStyle& style);
    void setTool(Tool tool);
    Tool tool() const { return m_tool; }
    /// The size of the picture's pixels on the specimen, in micrometres; 0: unknown, without a bar.
    void setPixelSize(double micrometres);
    /// Shows the picture greyed out, because it is not live.
    void setStale(bool stale);
    /// The text in the middle of the view while there is no picture, such as what it waits for.
    void setNotice(const QString& notice);
    const QString& notice() const { return m_notice; }

    const PViewGeometry& geometryOfView() const { return m_geometry; }
    /// The pixel under the cursor, or nothing.
    std::optional<PPixelValue> pixelUnderCursor() const;

public slots:
    /// Shows all of the picture, as large as possible.
    void fit();
    /// Shows the picture at 100 %, keeping the middle in place.
    void actualSize();
    void zoomIn();
    void zoomOut();

signals:
    /// The scale may have changed.
    void zoomChanged();
    /// The cursor moved, or the picture under it changed.
    void cursorChanged();
    void fullScreenRequested();
    /// A region was drawn, in pixels of the picture and inside of it.
    void regionDrawn(QRect region);
    /// Escape was pressed in the region tool.
    void regionCancelled();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    QPointF inDevicePixels(QPointF position) const { return position * devicePixelRatioF(); }
    void zoomBy(double factor, QPointF at);
    void changeView();
    void redraw();
    void renderAside();
    void showRendered(const QImage& canvas, bool isNewest);
    void prepareCanvas();
    void finishRegion();
    QRect drawnRegion() const;
    void paintNotice(QPainter& painter) const;
    void paintRegion(QPainter& painter) const;
    void paintScaleBar(QPainter& painter) const;
    void showCursor();

    PImage m_image;
    PViewGeometry m_geometry;
    PViewStyle m_style;
    QImage m_canvas;
    bool m_canvasIsOld = true;
    bool m_isBehind = false;   ///< the canvas shows an earlier picture
    bool m_isRendered = false; ///< the canvas is new and was not painted yet
    Tool m_tool = Tool::Move;
    double m_pixelSize = 0;
    bool m_stale = false;
    QString m_notice;
    bool m_pressed = false;
    QPointF m_cursor{-1, -1}; ///< in device pixels; outside: negative
    QPointF m_regionStart;    ///< in pixels of the picture
    PViewRenderer m_renderer; // last: its results are for the rest
};
