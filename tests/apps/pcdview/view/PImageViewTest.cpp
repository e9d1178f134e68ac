// SPDX-License-Identifier: MIT
#include <apps/pcdview/view/PImageView.h>

#include <apps/pcdview/ViewPictures.h>

#include <support/QtPrinters.h>
#include <support/WaitUntil.h>

#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

namespace {

/// As large as the first picture of the test.
PImage makeEven(const QColor& color) {
    return makePicture(800, 600, PDIP::ColorFormat::Bgr, [=](int, int) { return color; });
}

/// How often a widget was painted.
class PaintCount : public QObject {
public:
    explicit PaintCount(QObject& widget) { widget.installEventFilter(this); }
    int count() const { return m_count; }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        m_count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }

private:
    int m_count = 0;
};

class PImageViewTest : public testing::Test {
protected:
    PImageViewTest() {
        view.resize(400, 300);
        view.show();
        view.setImage(makePicture(800, 600, PDIP::ColorFormat::Bgr, [](int x, int y) {
            return x < 400 ? QColor(200, 10, 10) : QColor(10, 10, y % 256);
        }));
    }

    void wheel(QPoint at, int notches) {
        QWheelEvent event(at, view.mapToGlobal(at), {}, {0, 120 * notches}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&view, &event);
    }

    void drag(QPoint from, QPoint to) {
        QTest::mousePress(&view, Qt::LeftButton, {}, from);
        QTest::mouseMove(&view, (from + to) / 2);
        QTest::mouseMove(&view, to);
        QTest::mouseRelease(&view, Qt::LeftButton, {}, to);
    }

    PImageView view;
};

} // namespace

TEST_F(PImageViewTest, shows_the_picture_on_the_screen) {
    const QImage screen = view.grab().toImage();
    EXPECT_EQ(screen.pixelColor(100, 150), QColor(200, 10, 10));
    EXPECT_EQ(screen.pixelColor(300, 100), QColor(10, 10, 200));
}

TEST_F(PImageViewTest, the_next_picture_of_a_stream_is_painted_when_it_is_rendered) {
    view.grab();
    const PaintCount paints(view);
    view.setImage(makeEven(Qt::green));
    ASSERT_TRUE(waitUntil([&] { return paints.count() > 0; }));
    EXPECT_EQ(view.grab().toImage().pixelColor(100, 150), QColor(Qt::green));
}

TEST_F(PImageViewTest, whatever_is_painted_meanwhile_shows_the_next_picture_already) {
    view.grab();
    view.setImage(makeEven(Qt::green));
    EXPECT_EQ(view.grab().toImage().pixelColor(100, 150), QColor(Qt::green));
    view.setImage(makeEven(Qt::red));
    view.zoomIn();
    EXPECT_EQ(view.grab().toImage().pixelColor(100, 150), QColor(Qt::red));
}

TEST_F(PImageViewTest, the_wheel_zooms_to_the_cursor) {
    const QPoint cursor(310, 77);
    const QPointF before = view.geometryOfView().toPicture(cursor);
    wheel(cursor, 6);
    EXPECT_GT(view.geometryOfView().scale(), 1.8);
    const QPointF after = view.geometryOfView().toPicture(cursor);
    EXPECT_NEAR(after.x(), before.x(), 1e-6);
    EXPECT_NEAR(after.y(), before.y(), 1e-6);
}

TEST_F(PImageViewTest, dragging_moves_the_picture) {
    view.actualSize();
    const QPointF before = view.geometryOfView().toPicture({200, 150});
    drag({200, 150}, {150, 130});
    const QPointF after = view.geometryOfView().toPicture({150, 130});
    EXPECT_EQ(after, before);
}

TEST_F(PImageViewTest, a_double_click_requests_full_screen) {
    QSignalSpy requests(&view, &PImageView::fullScreenRequested);
    QTest::mouseDClick(&view, Qt::LeftButton);
    EXPECT_EQ(requests.count(), 1);
}

TEST_F(PImageViewTest, reports_the_pixel_under_the_cursor) {
    QTest::mouseMove(&view, {100, 150});
    const auto pixel = view.pixelUnderCursor();
    ASSERT_TRUE(pixel);
    EXPECT_EQ(pixel->at, QPoint(200, 300));
    EXPECT_EQ(pixel->red, 200);
    EXPECT_EQ(pixel->text(), u"x 200, y 300: R 200  G 10  B 10"_qs);
}

TEST_F(PImageViewTest, without_a_cursor_there_is_no_pixel) {
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&view, &leave);
    EXPECT_FALSE(view.pixelUnderCursor());
}

TEST_F(PImageViewTest, draws_a_region_in_pixels_of_the_picture) {
    view.setTool(PImageView::Tool::Region);
    QSignalSpy drawn(&view, &PImageView::regionDrawn);
    drag({250, 200}, {100, 50});
    ASSERT_EQ(drawn.count(), 1);
    EXPECT_EQ(drawn[0][0].toRect(), QRect(200, 100, 300, 300));
}

TEST_F(PImageViewTest, writes_the_size_of_a_region_on_a_dark_box) {
    view.setImage(
        makePicture(800, 600, PDIP::ColorFormat::Bgr, [](int, int) { return QColor(Qt::white); }));
    view.setTool(PImageView::Tool::Region);
    QTest::mousePress(&view, Qt::LeftButton, {}, {100, 50});
    QTest::mouseMove(&view, {250, 200});
    const QImage screen = view.grab().toImage();
    EXPECT_LT(screen.pixelColor(106, 56).lightness(), 150);
    EXPECT_GT(screen.pixelColor(240, 190).lightness(), 200);
}

TEST_F(PImageViewTest, a_region_ends_at_the_edge_of_the_picture) {
    view.setTool(PImageView::Tool::Region);
    QSignalSpy drawn(&view, &PImageView::regionDrawn);
    drag({300, 200}, {900, 900});
    ASSERT_EQ(drawn.count(), 1);
    EXPECT_EQ(drawn[0][0].toRect(), QRect(600, 400, 200, 200));
}

TEST_F(PImageViewTest, a_click_is_not_a_region) {
    view.setTool(PImageView::Tool::Region);
    QSignalSpy drawn(&view, &PImageView::regionDrawn);
    QTest::mouseClick(&view, Qt::LeftButton, {}, {100, 100});
    EXPECT_EQ(drawn.count(), 0);
}

TEST_F(PImageViewTest, escape_puts_the_region_tool_away) {
    view.setTool(PImageView::Tool::Region);
    QSignalSpy cancelled(&view, &PImageView::regionCancelled);
    QTest::keyClick(&view, Qt::Key_Escape);
    EXPECT_EQ(cancelled.count(), 1);
    EXPECT_EQ(view.tool(), PImageView::Tool::Move);
}

TEST_F(PImageViewTest, a_notice_is_shown_only_where_there_is_no_picture) {
    const auto shown = [this](const PImage& image, const QString& notice) {
        view.setImage(image);
        view.setNotice(notice);
        return view.grab().toImage();
    };
    const PImage picture = view.image();
    EXPECT_NE(shown({}, u"Waiting"_qs), shown({}, {}));
    EXPECT_EQ(shown(picture, u"Waiting"_qs), shown(picture, {}));
}

TEST_F(PImageViewTest, a_known_pixel_size_brings_a_scale_bar) {
    const QImage without = view.grab().toImage();
    view.setPixelSize(0.24);
    EXPECT_NE(view.grab().toImage(), without);
}
