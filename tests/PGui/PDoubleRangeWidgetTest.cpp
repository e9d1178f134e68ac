// SPDX-License-Identifier: MIT
#include <PGui/PDoubleRangeWidget.h>

#include <PGui/WidgetHands.h>
#include <support/QtPrinters.h>

#include <QSignalSpy>

#include <gtest/gtest.h>

#include <limits>

namespace {

class PDoubleRangeWidgetTest : public testing::Test {
protected:
    using Values = QList<double>;

    PDoubleRangeWidgetTest() {
        widget.setLocale(QLocale::c());
        widget.setRange({-30, 30, 0.1});
        widget.setValue(15);
        spy.clear();
        EXPECT_TRUE(showActive(&widget));
    }

    PNumberField* field() const { return widget.findChild<PNumberField*>(); }
    PRangeSlider* slider() const { return widget.findChild<PRangeSlider*>(); }
    Values reported() const {
        Values values;
        for (const QList<QVariant>& arguments : spy)
            values.append(arguments.first().toDouble());
        return values;
    }

    PDoubleRangeWidget widget;
    QSignalSpy spy{&widget, &PDoubleRangeWidget::valueChanged};
};

} // namespace

TEST_F(PDoubleRangeWidgetTest, emits_once_when_another_value_is_set) {
    widget.setValue(-12.3);
    widget.setValue(-12.3);
    EXPECT_EQ(reported(), Values({-12.3}));
    EXPECT_EQ(shownText(field()), u"-12.3"_qs);
}

TEST_F(PDoubleRangeWidgetTest, has_tenths_that_make_whole_numbers_times_ten) {
    for (int tenths = -300; tenths <= 300; ++tenths) {
        widget.setValue(tenths / 10.0);
        ASSERT_EQ(int(widget.value() * 10), tenths);
    }
}

TEST_F(PDoubleRangeWidgetTest, has_such_tenths_also_by_the_slider) {
    slider()->setFocus();
    widget.setValue(-30);
    for (int tenths = -299; tenths <= 300; ++tenths) {
        QTest::keyClick(slider(), Qt::Key_Right);
        ASSERT_EQ(int(widget.value() * 10), tenths);
    }
}

TEST_F(PDoubleRangeWidgetTest, emits_once_when_a_range_moves_the_value) {
    widget.setRange({-30, 10, 0.1});
    EXPECT_EQ(reported(), Values({10}));
    EXPECT_EQ(widget.range(), (PMinMaxRange<double>{-30, 10, 0.1}));
}

TEST_F(PDoubleRangeWidgetTest, takes_what_is_typed) {
    enter(field(), u"-0.34"_qs);
    EXPECT_EQ(reported(), Values({-0.3}));
    EXPECT_EQ(slider()->value(), 297);
}

TEST_F(PDoubleRangeWidgetTest, works_over_milliseconds_to_seconds_with_exact_ends) {
    widget.setRange({0.105, 5000, 0.01});
    slider()->setFocus();
    QTest::keyClick(slider(), Qt::Key_Home);
    EXPECT_EQ(widget.value(), 0.105);
    EXPECT_EQ(shownText(field()), u"0.105"_qs);
    QTest::keyClick(slider(), Qt::Key_End);
    EXPECT_EQ(widget.value(), 5000);
}

TEST_F(PDoubleRangeWidgetTest, shows_a_value_held_elsewhere_with_all_its_decimals) {
    widget.showValue({-30, 30, 0.1}, 42.125);
    EXPECT_EQ(widget.value(), 42.125);
    EXPECT_EQ(shownText(field()), u"42.125"_qs);
    EXPECT_EQ(spy.size(), 0);
}

TEST_F(PDoubleRangeWidgetTest, ignores_what_is_not_finite) {
    widget.setValue(std::numeric_limits<double>::quiet_NaN());
    widget.setValue(std::numeric_limits<double>::infinity());
    widget.setRange({0, std::numeric_limits<double>::infinity(), 1});
    EXPECT_EQ(widget.value(), 15);
    EXPECT_EQ(spy.size(), 0);
}
