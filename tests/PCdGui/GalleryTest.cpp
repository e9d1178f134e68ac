// SPDX-License-Identifier: MIT
#include <PCdGui/CatalogueDevice.h>
#include <PCdGui/PCdGui.h>
#include <PCdGui/PDevicePanel.h>

#include <support/RowTest.h>

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QLineEdit>
#include <QPalette>
#include <QSet>
#include <QStyle>
#include <QTemporaryDir>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace {

QPalette lightPalette() {
    return QPalette(QColor(0xef, 0xef, 0xef));
}

QPalette darkPalette() {
    QPalette dark(QColor(0x3a, 0x3a, 0x3d));
    dark.setColor(QPalette::Base, QColor(0x22, 0x22, 0x24));
    dark.setColor(QPalette::Highlight, QColor(0x3d, 0x7e, 0xc8));
    for (const QPalette::ColorRole role :
         {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        dark.setColor(QPalette::Disabled, role, QColor(0x8c, 0x8c, 0x8c));
    dark.setColor(QPalette::Disabled, QPalette::Highlight, QColor(0x60, 0x60, 0x60));
    return dark;
}

struct Look {
    const char* name;
    QPalette (*palette)();
};

/// Renders editors, for inspection, into the folder in the environment variable PCD_SCREENSHOTS, if
/// it is set.
class GalleryTest : public RowTest<Look> {
protected:
    GalleryTest()
        : m_before(QApplication::palette())
        , m_style(QApplication::style()->objectName()) {
        QApplication::setStyle(u"Fusion"_qs);
        QApplication::setPalette(GetParam().palette());
        PCdGui::install();
    }

    ~GalleryTest() override {
        QApplication::setStyle(m_style);
        QApplication::setPalette(m_before);
    }

    QString folder() const {
        const QString given = qEnvironmentVariable("PCD_SCREENSHOTS");
        return given.isEmpty() ? m_temporary.path() : given;
    }

    /// Saves a picture of the widget and returns its number of colours.
    qsizetype save(QWidget* widget, const QString& name) const {
        const QImage picture = widget->grab().toImage().convertToFormat(QImage::Format_RGB32);
        const QString file =
            u"%1/%2-%3.png"_qs.arg(folder(), name, QString::fromLatin1(GetParam().name));
        EXPECT_TRUE(QDir().mkpath(folder()));
        EXPECT_TRUE(picture.save(file)) << file.toStdString();
        QSet<QRgb> colours;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x)
                colours.insert(picture.pixel(x, y));
        }
        return colours.size();
    }

    CatalogueDevice device;

private:
    QPalette m_before;
    QString m_style;
    QTemporaryDir m_temporary;
};

bool hasRoom(const QWidget* part) {
    // The line edit in a spin box is smaller than a separate one, whose size hint it has.
    if (const auto* const line = qobject_cast<const QLineEdit*>(part))
        return line->fontMetrics().horizontalAdvance(line->text()) <= line->contentsRect().width();
    const QSize need = part->minimumSizeHint();
    return part->width() >= need.width() && part->height() >= need.height();
}

/// The child widgets that have less room than they need.
QStringList squeezed(const QWidget* widget) {
    QStringList names;
    for (const QWidget* part : widget->findChildren<QWidget*>()) {
        if (part->isVisible() && !hasRoom(part))
            names.append(QString::fromLatin1(part->metaObject()->className()));
    }
    return names;
}

} // namespace

ROW_TEST(GalleryTest, every_editor_alone_has_room_for_all_its_parts) {
    for (PDeviceProperty* property : device.supportProperties()) {
        const std::unique_ptr<QWidget> editor(property->createWidget());
        editor->resize(editor->minimumSizeHint());
        editor->show();
        EXPECT_TRUE(squeezed(editor.get()).isEmpty()) << property->id().toStdString();
        editor->resize(editor->sizeHint());
        EXPECT_GT(save(editor.get(), QString::fromLatin1(property->id())), 2)
            << property->id().toStdString();
    }
}

ROW_TEST(GalleryTest, the_page_of_a_device_has_room_for_all_its_parts_at_its_smallest) {
    const std::unique_ptr<QWidget> page(device.createPropertiesWidget(nullptr));
    page->resize(page->minimumSizeHint().width(), 1230);
    page->show();
    QApplication::processEvents();
    EXPECT_TRUE(squeezed(page.get()).isEmpty()) << squeezed(page.get()).join(u' ').toStdString();
    EXPECT_GT(save(page.get(), u"page"_qs), 8);
}

ROW_TEST(GalleryTest, the_page_of_a_device_that_is_gone_can_still_be_read) {
    const std::unique_ptr<QWidget> page(device.createPropertiesWidget(nullptr));
    device.link();
    device.unlink();
    page->resize(420, 500);
    page->show();
    QApplication::processEvents();
    EXPECT_GT(save(page.get(), u"page-gone"_qs), 8);
}

ROW_TEST(GalleryTest, the_page_filtered_shows_what_matches) {
    const std::unique_ptr<QWidget> page(device.createPropertiesWidget(nullptr));
    static_cast<PDevicePanel*>(page.get())->setFilter(u"flip"_qs);
    page->resize(420, 300);
    page->show();
    QApplication::processEvents();
    EXPECT_GT(save(page.get(), u"page-filtered"_qs), 8);
}

ROWS(Looks, GalleryTest, Look{"light", &lightPalette}, Look{"dark", &darkPalette});
