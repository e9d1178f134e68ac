// SPDX-License-Identifier: MIT
#include <apps/pcdview/icons/PActionIcon.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QSet>
#include <QSvgRenderer>

namespace {

const QColor iconColour(0x12, 0x34, 0x56);
const QColor iconDisabledColour(0x9a, 0x8b, 0x7c);
const QColor iconSelectedColour(0xfe, 0xdc, 0xba);
const QColor iconGrey(0x2e, 0x34, 0x36);

/// With a desktop's icon theme of its own, which is empty, and colours of text that nothing else
/// has.
class PActionIconTest : public FolderTest {
protected:
    PActionIconTest() {
        QDir().mkpath(path(u"lab/22"_qs));
        writeFile(path(u"lab/index.theme"_qs),
                  "[Icon Theme]\nName=lab\nDirectories=22\n[22]\nSize=22\nType=Fixed\n");
        QIcon::setThemeSearchPaths({path({})});
        QIcon::setThemeName(u"lab"_qs);
        QPalette colours;
        colours.setColor(QPalette::ButtonText, iconColour);
        colours.setColor(QPalette::Disabled, QPalette::ButtonText, iconDisabledColour);
        colours.setColor(QPalette::HighlightedText, iconSelectedColour);
        QApplication::setPalette(colours);
    }
    ~PActionIconTest() override {
        QApplication::setPalette(m_palette);
        QIcon::setThemeName(m_theme);
        QIcon::setThemeSearchPaths(m_paths);
    }

    /// The left half of an icon of the theme; the other is transparent.
    void addToTheme(const QString& name, const QColor& colour) const {
        QImage icon(22, 22, QImage::Format_ARGB32);
        icon.fill(Qt::transparent);
        for (int y = 0; y < 22; ++y) {
            for (int x = 0; x < 11; ++x)
                icon.setPixelColor(x, y, colour);
        }
        ASSERT_TRUE(icon.save(path(u"lab/22/%1.png"_qs.arg(name))));
        QIcon::setThemeName(u"lab"_qs); // which reads it again
    }
    static QImage drawn(const QString& name, QIcon::Mode mode = QIcon::Normal, int size = 22) {
        return PActionIcon::make(name).pixmap({size, size}, 1, mode).toImage();
    }
    /// The colours of the pixels that are not transparent at all.
    static QSet<QRgb> colours(const QImage& image) {
        QSet<QRgb> found;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixelColor(x, y).alpha() == 255)
                    found.insert(image.pixel(x, y));
            }
        }
        return found;
    }
    /// What covers how much of each pixel.
    static QImage shape(const QImage& image) {
        return image.convertToFormat(QImage::Format_Alpha8);
    }
    /// The shape of the program's own icon in this file.
    static QImage drawing(int grid, const QString& name) {
        QSvgRenderer file(u":/pcdview/icons/breeze/%1/%2.svg"_qs.arg(QString::number(grid), name));
        EXPECT_TRUE(file.isValid());
        QImage image(grid, grid, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        file.render(&painter);
        return shape(image);
    }

private:
    const QPalette m_palette = QApplication::palette();
    const QString m_theme = QIcon::themeName();
    const QStringList m_paths = QIcon::themeSearchPaths();
};

} // namespace

TEST_F(PActionIconTest, is_the_program_s_own_where_the_theme_has_none) {
    EXPECT_FALSE(PActionIcon::make(u"camera-photo"_qs).isNull());
    EXPECT_EQ(colours(drawn(u"camera-photo"_qs)), QSet<QRgb>{iconColour.rgb()});
}

TEST_F(PActionIconTest, is_null_where_there_is_none_at_all) {
    EXPECT_TRUE(PActionIcon::make(u"no-such-icon"_qs).isNull());
}

TEST_F(PActionIconTest, of_the_theme_comes_before_the_program_s_own) {
    addToTheme(u"camera-photo"_qs, iconGrey);
    const QImage icon = drawn(u"camera-photo"_qs);
    EXPECT_EQ(icon.pixelColor(5, 11), iconColour);
    EXPECT_EQ(icon.pixelColor(16, 11).alpha(), 0);
}

TEST_F(PActionIconTest, of_one_grey_has_the_colour_of_the_text_around_it) {
    addToTheme(u"lab-grey"_qs, iconGrey);
    EXPECT_EQ(drawn(u"lab-grey"_qs, QIcon::Normal).pixelColor(5, 11), iconColour);
    EXPECT_EQ(drawn(u"lab-grey"_qs, QIcon::Active).pixelColor(5, 11), iconColour);
    EXPECT_EQ(drawn(u"lab-grey"_qs, QIcon::Disabled).pixelColor(5, 11), iconDisabledColour);
    EXPECT_EQ(drawn(u"lab-grey"_qs, QIcon::Selected).pixelColor(5, 11), iconSelectedColour);
}

TEST_F(PActionIconTest, follows_the_colours_as_they_change) {
    const QIcon icon = PActionIcon::make(u"camera-photo"_qs);
    QApplication::setPalette(QPalette(Qt::white, Qt::black));
    const QColor now = QApplication::palette().color(QPalette::ButtonText);
    EXPECT_EQ(colours(icon.pixmap({22, 22}, 1).toImage()), QSet<QRgb>{now.rgb()});
}

TEST_F(PActionIconTest, in_colours_keeps_them) {
    addToTheme(u"lab-red"_qs, Qt::red);
    EXPECT_EQ(drawn(u"lab-red"_qs).pixelColor(5, 11), QColor(Qt::red));
    EXPECT_EQ(colours(drawn(u"media-record"_qs)).size(), 1);
    EXPECT_GT(drawn(u"media-record"_qs).pixelColor(11, 11).red(), 200);
}

TEST_F(PActionIconTest, in_colours_is_faint_while_it_is_disabled) {
    addToTheme(u"lab-red"_qs, Qt::red);
    const QColor shown = drawn(u"lab-red"_qs, QIcon::Disabled).pixelColor(5, 11);
    EXPECT_EQ(shown.red(), 255);
    EXPECT_NEAR(shown.alphaF(), 0.4, 0.01);
}

TEST_F(PActionIconTest, in_colours_gives_way_to_a_symbolic_one) {
    addToTheme(u"lab-red"_qs, Qt::red);
    addToTheme(u"lab-red-symbolic"_qs, iconGrey);
    EXPECT_EQ(drawn(u"lab-red"_qs).pixelColor(5, 11), iconColour);
    EXPECT_FALSE(PActionIcon::make(u"lab-red"_qs).isNull());
}

TEST_F(PActionIconTest, symbolic_is_enough) {
    addToTheme(u"lab-only-symbolic"_qs, iconGrey);
    EXPECT_EQ(drawn(u"lab-only"_qs).pixelColor(5, 11), iconColour);
    EXPECT_FALSE(PActionIcon::make(u"lab-only"_qs).isNull());
}

TEST_F(PActionIconTest, is_drawn_for_the_pixels_of_the_screen) {
    const QIcon icon = PActionIcon::make(u"camera-photo"_qs);
    const QPixmap shown = icon.pixmap({22, 22}, 2);
    EXPECT_EQ(shown.size(), QSize(44, 44));
    QImage screen(44, 44, QImage::Format_ARGB32_Premultiplied);
    screen.setDevicePixelRatio(2);
    screen.fill(Qt::transparent);
    QPainter painter(&screen);
    icon.paint(&painter, 0, 0, 22, 22);
    painter.end();
    EXPECT_EQ(screen, shown.toImage());
    EXPECT_NE(screen, drawn(u"camera-photo"_qs).scaled(44, 44)); // but not coarse
}

TEST_F(PActionIconTest, has_a_drawing_of_its_own_for_menus) {
    EXPECT_EQ(shape(drawn(u"camera-photo"_qs, QIcon::Normal, 16)), drawing(16, u"camera-photo"_qs));
    EXPECT_EQ(shape(drawn(u"camera-photo"_qs, QIcon::Normal, 22)), drawing(22, u"camera-photo"_qs));
    EXPECT_FALSE(colours(drawn(u"contrast"_qs, QIcon::Normal, 16)).isEmpty()); // only a large one
}
