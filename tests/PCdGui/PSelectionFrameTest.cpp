// SPDX-License-Identifier: MIT
#include <PCdGui/PSelectionFrame.h>

#include <PGui/WidgetHands.h>
#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <QHBoxLayout>
#include <QPushButton>
#include <QRadioButton>

#include <gtest/gtest.h>

namespace {

/// Two page buttons with a style sheet that does not show which one is checked.
class PSelectionFrameTest : public RowTest<QColor> {
public:
    static std::string toRowName(const QColor& colour) {
        return colour == QColor(Qt::white) ? "light" : "dark";
    }

protected:
    PSelectionFrameTest() {
        auto* const row = new QHBoxLayout(&page);
        for (QPushButton* button : {&video, &trigger, &run}) {
            button->setCheckable(true);
            button->setAutoExclusive(button != &run);
            row->addWidget(button);
        }
        page.setStyleSheet(u"QPushButton { background: #313131; border: none; }"_qs);
        QPalette colours(GetParam());
        colours.setColor(QPalette::Highlight, highlight);
        QApplication::setPalette(colours);
        video.setChecked(true);
        PSelectionFrame::addTo(page);
        EXPECT_TRUE(showActive(&page));
    }
    ~PSelectionFrameTest() override { QApplication::setPalette(before); }

    /// The number of pixels of the button in the colour of selected items.
    static int framed(QPushButton& button) {
        const QImage shown = button.grab().toImage().convertToFormat(QImage::Format_RGB32);
        int count = 0;
        for (int y = 0; y < shown.height(); ++y) {
            for (int x = 0; x < shown.width(); ++x)
                count += shown.pixelColor(x, y) == highlight ? 1 : 0;
        }
        return count;
    }

    inline static const QColor highlight{10, 120, 230};
    const QPalette before = QApplication::palette();
    QWidget page; // before the buttons, which are its children: they are destroyed first
    QPushButton video;
    QPushButton trigger;
    QPushButton run;
};

} // namespace

ROW_TEST(PSelectionFrameTest, is_around_the_selected_button_only) {
    const int around = 2 * (video.width() + video.height());
    EXPECT_GT(framed(video), around);
    EXPECT_EQ(framed(trigger), 0);
}

ROW_TEST(PSelectionFrameTest, follows_the_selection) {
    QTest::mouseClick(&trigger, Qt::LeftButton);
    EXPECT_GT(framed(trigger), 0);
    EXPECT_EQ(framed(video), 0);
    QTest::mouseClick(&video, Qt::LeftButton);
    EXPECT_GT(framed(video), 0) << "a click goes through the frame";
    EXPECT_EQ(framed(trigger), 0);
}

ROW_TEST(PSelectionFrameTest, ignores_buttons_that_choose_nothing) {
    run.setChecked(true);
    EXPECT_EQ(framed(run), 0);
    EXPECT_EQ(run.findChild<PSelectionFrame*>(), nullptr);
}

ROW_TEST(PSelectionFrameTest, grows_with_the_button) {
    page.resize(900, 200);
    video.setMinimumHeight(80);
    QCoreApplication::processEvents();
    EXPECT_GT(framed(video), 2 * (video.width() + 80));
}

ROWS(Looks, PSelectionFrameTest, QColor(Qt::white), QColor(0x2b, 0x2d, 0x30));
