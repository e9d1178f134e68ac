// SPDX-License-Identifier: MIT
#include <PGui/PColumnScroll.h>

#include <PGui/WidgetHands.h>
#include <support/QtPrinters.h>
#include <support/WaitUntil.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QScrollBar>

#include <gtest/gtest.h>

namespace {

class PColumnScrollTest : public testing::Test {
protected:
    PColumnScrollTest() {
        column->setMinimumSize(240, 600);
        scroll.setWidget(column);
    }

    QWidget* column = new QWidget;
    PColumnScroll scroll;
};

} // namespace

TEST_F(PColumnScrollTest, is_as_wide_as_the_column_and_the_bar_and_may_be_low) {
    const int needed = 240 + scroll.verticalScrollBar()->sizeHint().width();
    EXPECT_EQ(scroll.minimumSizeHint().width(), needed);
    EXPECT_EQ(scroll.sizeHint().width(), needed);
    EXPECT_LT(scroll.minimumSizeHint().height(), 200);
}

TEST_F(PColumnScrollTest, scrolls_down_and_never_sideways) {
    scroll.resize(300, 200);
    ASSERT_TRUE(showActive(&scroll));
    EXPECT_TRUE(scroll.verticalScrollBar()->isVisible());
    EXPECT_EQ(scroll.verticalScrollBar()->maximum(), 400);
    scroll.resize(100, 200);
    EXPECT_FALSE(scroll.horizontalScrollBar()->isVisible());
}

TEST_F(PColumnScrollTest, lets_the_column_fill_it) {
    scroll.resize(400, 200);
    ASSERT_TRUE(showActive(&scroll));
    EXPECT_EQ(column->width(), scroll.viewport()->width());
}

TEST(PColumnScroll, needs_more_room_when_its_column_does) {
    QWidget window;
    auto* const scroll = new PColumnScroll;
    (new QHBoxLayout(&window))->addWidget(scroll);
    auto* const column = new QWidget;
    auto* const control = new QLabel;
    (new QVBoxLayout(column))->addWidget(control);
    scroll->setWidget(column);
    ASSERT_TRUE(showActive(&window));
    control->setMinimumWidth(control->width() + 300);
    EXPECT_TRUE(waitUntil([&] { return scroll->viewport()->width() >= control->minimumWidth(); }));
}
