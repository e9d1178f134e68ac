// SPDX-License-Identifier: MIT
// A part of a group's panel that is repainted alone, compared with the panel painted as a whole.
#include <PCdGui/PPropertyGroupPanel.h>

#include <PCdGui/PCdGui.h>
#include <PCdGui/TypedProperties.h>

#include <PGui/WidgetHands.h>
#include <support/QtPrinters.h>

#include <QApplication>
#include <QImage>
#include <QPixmapCache>
#include <QProxyStyle>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace {

/// Counts how often a group box is drawn.
class CountingStyle : public QProxyStyle {
public:
    CountingStyle()
        : QProxyStyle(u"Fusion"_qs) {}

    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                            QPainter* painter, const QWidget* widget) const override {
        drawn += control == CC_GroupBox ? 1 : 0;
        QProxyStyle::drawComplexControl(control, option, painter, widget);
    }

    mutable int drawn = 0;
};

class PGroupBoxPictureTest : public testing::Test {
protected:
    PGroupBoxPictureTest() {
        PCdGui::install();
        QPixmapCache::clear();
        panel.setStyle(&style);
        panel.resize(300, 120);
        EXPECT_TRUE(showActive(&panel));
    }

    /// Only this part is painted.
    QImage paint(const QRect& part) {
        QImage image(part.size(), QImage::Format_RGB32);
        image.fill(Qt::white);
        panel.render(&image, QPoint(), QRegion(part));
        return image;
    }
    QRect belowTitle() const { return panel.contentsRect().adjusted(5, 2, -5, -2); }

    /// With the frame.
    QRect below() const { return panel.rect().adjusted(0, panel.contentsRect().top(), 0, 0); }

    /// The greatest difference of a colour between a part painted alone and in the whole panel.
    int findDifference(const QRect& part) {
        const QImage alone = paint(part);
        QImage whole(panel.size(), QImage::Format_RGB32);
        whole.fill(Qt::white);
        panel.render(&whole);
        whole = whole.copy(part);
        int most = 0;
        for (int y = 0; y < part.height(); ++y) {
            for (int x = 0; x < part.width(); ++x) {
                const QColor a = alone.pixelColor(x, y);
                const QColor b = whole.pixelColor(x, y);
                most = std::max({most, std::abs(a.red() - b.red()), std::abs(a.green() - b.green()),
                                 std::abs(a.blue() - b.blue())});
            }
        }
        return most;
    }

    CountingStyle style;
    FakeNumber gain{"expogain", u"Gain"_qs, {0, 500, 1}, 100};
    PPropertyGroupPanel panel{u"Cooling"_qs, QList<PDeviceProperty*>{&gain}};
};

constexpr int rounding = 1; // of a shade that is painted on another

} // namespace

TEST_F(PGroupBoxPictureTest, is_drawn_once_for_repaints_below_the_title) {
    paint(belowTitle());
    style.drawn = 0;
    paint(belowTitle());
    paint(belowTitle().adjusted(0, 10, 0, 0));
    EXPECT_EQ(style.drawn, 0);
}

TEST_F(PGroupBoxPictureTest, is_not_used_for_the_title) {
    paint(panel.rect());
    style.drawn = 0;
    paint(QRect(0, 0, panel.width(), panel.contentsRect().top()));
    EXPECT_EQ(style.drawn, 1);
}

TEST_F(PGroupBoxPictureTest, looks_like_the_box_that_the_style_draws) {
    EXPECT_LE(findDifference(belowTitle()), rounding);
    EXPECT_LE(findDifference(panel.contentsRect()), rounding);
    EXPECT_LE(findDifference(below()), rounding) << "with its frame";
}

TEST_F(PGroupBoxPictureTest, follows_the_size_of_the_panel) {
    paint(belowTitle());
    panel.resize(400, 200);
    EXPECT_LE(findDifference(below()), rounding);
}

TEST_F(PGroupBoxPictureTest, follows_the_colours_of_the_panel) {
    paint(belowTitle());
    QPalette dark = panel.palette();
    dark.setColor(QPalette::Window, QColor(40, 44, 52));
    panel.setPalette(dark);
    style.drawn = 0;
    EXPECT_LE(findDifference(belowTitle()), rounding);
    EXPECT_EQ(style.drawn, 2) << "once for the picture, once for the whole";
}

TEST_F(PGroupBoxPictureTest, follows_the_title) {
    paint(belowTitle());
    panel.setTitle(QString());
    EXPECT_LE(findDifference(below()), rounding);
}
