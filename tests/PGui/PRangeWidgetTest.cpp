// SPDX-License-Identifier: MIT
#include <PGui/PRangeWidget.h>

#include <PGui/WidgetHands.h>
#include <support/QtPrinters.h>

#include <QSignalSpy>

#include <gtest/gtest.h>

#include <limits>

namespace {

class PRangeWidgetTest : public testing::Test {
protected:
    using Values = QList<int>;

    PRangeWidgetTest() {
        widget.setRange({10, 230, 1});
        widget.setValue(120);
        spy.clear();
        EXPECT_TRUE(showActive(&widget));
    }

    PNumberField* field() const { return widget.findChild<PNumberField*>(); }
    PRangeSlider* slider() const { return widget.findChild<PRangeSlider*>(); }
    Values reported() const {
        Values values;
        for (const QList<QVariant>& arguments : spy)
            values.append(arguments.first().toInt());
        return values;
    }

    PRangeWidget widget;
    QSignalSpy spy{&widget, &PRangeWidget::valueChanged};
};

} // namespace

TEST_F(PRangeWidgetTest, emits_once_when_another_value_is_set) {
    widget.setValue(50);
    widget.setValue(50);
    EXPECT_EQ(reported(), Values({50}));
}

TEST_F(PRangeWidgetTest, shows_the_value_in_both_parts) {
    widget.setValue(50);
    EXPECT_EQ(shownText(field()), u"50"_qs);
    EXPECT_EQ(slider()->value(), 40);
}

TEST_F(PRangeWidgetTest, changes_a_value_outside_the_range_to_its_end) {
    widget.setValue(1000);
    widget.setValue(-5);
    EXPECT_EQ(reported(), Values({230, 10}));
}

TEST_F(PRangeWidgetTest, rounds_a_value_between_steps_to_the_nearest) {
    widget.setRange({0, 99, 10});
    spy.clear();
    widget.setValue(47);
    EXPECT_EQ(widget.value(), 50);
    widget.setValue(99);
    EXPECT_EQ(reported(), Values({50, 99}));
}

TEST_F(PRangeWidgetTest, emits_once_when_a_range_moves_the_value) {
    widget.setRange({10, 100, 1});
    EXPECT_EQ(reported(), Values({100}));
    EXPECT_EQ(widget.range(), (PMinMaxRange<int>{10, 100, 1}));
}

TEST_F(PRangeWidgetTest, emits_nothing_when_a_range_leaves_the_value) {
    widget.setRange({0, 1000, 1});
    EXPECT_EQ(spy.size(), 0);
    EXPECT_EQ(widget.value(), 120);
}

TEST_F(PRangeWidgetTest, moves_the_slider_with_the_field_and_emits_once) {
    enter(field(), u"60"_qs);
    EXPECT_EQ(slider()->value(), 50);
    EXPECT_EQ(reported(), Values({60}));
}

TEST_F(PRangeWidgetTest, moves_the_field_with_the_slider_and_emits_once) {
    slider()->setFocus();
    QTest::keyClick(slider(), Qt::Key_Right);
    EXPECT_EQ(shownText(field()), u"121"_qs);
    EXPECT_EQ(reported(), Values({121}));
}

TEST_F(PRangeWidgetTest, does_not_loop_where_the_listener_sets_the_value_back) {
    QObject::connect(&widget, &PRangeWidget::valueChanged, &widget,
                     [this](int) { widget.setValue(120); });
    enter(field(), u"60"_qs);
    EXPECT_EQ(widget.value(), 120);
    EXPECT_EQ(shownText(field()), u"120"_qs);
    EXPECT_EQ(slider()->value(), 110);
    EXPECT_EQ(spy.size(), 2);
}

TEST_F(PRangeWidgetTest, shows_a_value_held_elsewhere_as_it_is_and_silently) {
    widget.showValue({200, 2500, 1}, 6503);
    EXPECT_EQ(widget.value(), 6503);
    EXPECT_EQ(shownText(field()), u"6503"_qs);
    EXPECT_EQ(slider()->value(), slider()->maximum());
    EXPECT_EQ(spy.size(), 0);
}

TEST_F(PRangeWidgetTest, works_from_ten_microseconds_to_fifty_seconds) {
    widget.setRange({10, 50000000, 1});
    spy.clear();
    slider()->setFocus();
    QTest::keyClick(slider(), Qt::Key_Home);
    QTest::keyClick(slider(), Qt::Key_Right);
    QTest::keyClick(slider(), Qt::Key_End);
    QTest::keyClick(slider(), Qt::Key_Left);
    EXPECT_EQ(reported(), Values({10, 11, 50000000, 49000000}));
}

TEST_F(PRangeWidgetTest, holds_all_integers) {
    constexpr int least = std::numeric_limits<int>::min();
    constexpr int most = std::numeric_limits<int>::max();
    widget.setRange({least, most, 1});
    widget.setValue(most);
    EXPECT_EQ(widget.value(), most);
    widget.setValue(least);
    EXPECT_EQ(widget.value(), least);
    EXPECT_EQ(shownText(field()), u"-2147483648"_qs);
}

TEST_F(PRangeWidgetTest, takes_a_step_that_is_not_positive_as_one) {
    widget.setRange({0, 1000, 0});
    widget.setValue(7);
    EXPECT_EQ(widget.value(), 7);
}

TEST_F(PRangeWidgetTest, gives_the_focus_to_the_field_which_is_its_only_tab_stop) {
    widget.setFocus();
    EXPECT_TRUE(field()->hasFocus());
    QTest::keyClick(field(), Qt::Key_Tab);
    EXPECT_FALSE(slider()->hasFocus());
}

TEST_F(PRangeWidgetTest, disables_both_parts) {
    widget.setEnabled(false);
    EXPECT_FALSE(field()->isEnabled());
    EXPECT_FALSE(slider()->isEnabled());
}

TEST_F(PRangeWidgetTest, names_both_parts) {
    widget.setControlName(u"Gain"_qs);
    EXPECT_EQ(field()->accessibleName(), u"Gain"_qs);
    EXPECT_EQ(slider()->accessibleName(), u"Gain"_qs);
}

TEST_F(PRangeWidgetTest, writes_a_suffix_and_reads_it) {
    widget.setSuffix(u" %"_qs);
    EXPECT_EQ(shownText(field()), u"120 %"_qs);
    enter(field(), u"60%"_qs);
    EXPECT_EQ(reported(), Values({60}));
}

TEST_F(PRangeWidgetTest, shows_that_no_value_is_known_until_there_is_one) {
    widget.showNoValue({10, 230, 1});
    EXPECT_EQ(shownText(field()), QString());
    EXPECT_FALSE(slider()->isEnabled());
    EXPECT_EQ(widget.value(), 0);
    widget.setRange({20, 40, 1});
    EXPECT_EQ(reported(), Values());
    widget.showValue({10, 230, 1}, 30);
    EXPECT_EQ(shownText(field()), u"30"_qs);
    EXPECT_TRUE(slider()->isEnabled());
    EXPECT_EQ(reported(), Values());
}

TEST_F(PRangeWidgetTest, takes_what_is_entered_where_no_value_was_known) {
    widget.showNoValue({10, 230, 1});
    enter(field(), u"50"_qs);
    EXPECT_EQ(reported(), Values({50}));
    EXPECT_TRUE(slider()->isEnabled());
}
