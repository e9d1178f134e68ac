// SPDX-License-Identifier: MIT
#include <PGui/PRangeSlider.h>

#include <PGui/WidgetHands.h>

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace {

class PRangeSliderTest : public testing::Test {
protected:
    PRangeSliderTest() {
        slider.resize(300, 24);
        slider.setScale(PRangeScale({10, 50000000, 1}));
        slider.showValue(1000);
        EXPECT_TRUE(showActive(&slider));
    }

    double picked() const { return spy.isEmpty() ? -1 : spy.last().first().toDouble(); }

    PRangeSlider slider;
    QSignalSpy spy{&slider, &PRangeSlider::valuePicked};
};

} // namespace

TEST_F(PRangeSliderTest, shows_values_silently) {
    slider.showValue(20);
    slider.setScale(PRangeScale({0, 30, 1}));
    EXPECT_EQ(spy.size(), 0);
    EXPECT_EQ(slider.value(), 20);
}

TEST_F(PRangeSliderTest, moves_the_value_where_a_key_is_less_than_a_position) {
    slider.showValue(10);
    QTest::keyClick(&slider, Qt::Key_Right);
    EXPECT_EQ(picked(), 11);
    QTest::keyClick(&slider, Qt::Key_Left);
    EXPECT_EQ(picked(), 10);
    EXPECT_EQ(spy.size(), 2);
}

TEST_F(PRangeSliderTest, moves_a_position_where_a_step_is_too_small_to_see) {
    slider.setScale(PRangeScale({0, 50000000, 1}));
    slider.showValue(0);
    QTest::keyClick(&slider, Qt::Key_Right);
    EXPECT_EQ(picked(), 5000);
}

TEST_F(PRangeSliderTest, moves_to_the_exact_ends_with_home_and_end) {
    QTest::keyClick(&slider, Qt::Key_End);
    EXPECT_EQ(picked(), 50000000);
    QTest::keyClick(&slider, Qt::Key_Home);
    EXPECT_EQ(picked(), 10);
}

TEST_F(PRangeSliderTest, moves_a_tenth_of_its_way_with_the_page_keys) {
    slider.setScale(PRangeScale({0, 200, 1}));
    slider.showValue(50);
    QTest::keyClick(&slider, Qt::Key_PageUp);
    EXPECT_EQ(picked(), 70);
}

TEST_F(PRangeSliderTest, moves_by_steps_with_the_wheel_and_by_ten_with_control) {
    turnWheel(&slider, 1);
    EXPECT_EQ(picked(), 1100);
    slider.setScale(PRangeScale({0, 200, 1}));
    slider.showValue(50);
    turnWheel(&slider, -2, Qt::ControlModifier);
    EXPECT_EQ(picked(), 30);
}

TEST_F(PRangeSliderTest, never_goes_back_from_a_value_beyond_its_end) {
    slider.setScale(PRangeScale({0, 50000000, 1}));
    slider.showValue(60000000);
    spy.clear();
    QTest::keyClick(&slider, Qt::Key_Right);
    QTest::keyClick(&slider, Qt::Key_PageUp);
    EXPECT_EQ(spy.size(), 0);
}

TEST_F(PRangeSliderTest, reaches_the_exact_ends_when_dragged_to_them) {
    slider.setSliderDown(true);
    slider.setSliderPosition(slider.maximum());
    EXPECT_EQ(picked(), 50000000);
    slider.setSliderPosition(0);
    EXPECT_EQ(picked(), 10);
}

TEST_F(PRangeSliderTest,
       leaves_the_handle_alone_while_it_is_held_and_moves_it_to_the_value_afterwards) {
    slider.setSliderDown(true);
    slider.setSliderPosition(700);
    slider.showValue(1000);
    EXPECT_EQ(slider.value(), 700);
    slider.setSliderDown(false);
    EXPECT_EQ(slider.value(), PRangeScale({10, 50000000, 1}).toPosition(1000));
    EXPECT_EQ(spy.size(), 1);
}

TEST_F(PRangeSliderTest, follows_a_mouse_that_drags_it) {
    slider.setScale(PRangeScale({0, 200, 1}));
    slider.showValue(0);
    const int middle = slider.height() / 2;
    QTest::mousePress(&slider, Qt::LeftButton, {}, QPoint(6, middle));
    QTest::mouseMove(&slider, QPoint(150, middle));
    QTest::mouseMove(&slider, QPoint(299, middle));
    QTest::mouseRelease(&slider, Qt::LeftButton, {}, QPoint(299, middle));
    EXPECT_EQ(picked(), 200);
}
