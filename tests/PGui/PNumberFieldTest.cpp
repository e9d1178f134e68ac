// SPDX-License-Identifier: MIT
#include <PGui/PNumberField.h>

#include <PGui/PTimeText.h>

#include <PGui/WidgetHands.h>
#include <support/QtPrinters.h>

#include <QSignalSpy>
#include <QVBoxLayout>

#include <gtest/gtest.h>

#include <limits>

namespace {

class PNumberFieldTest : public testing::Test {
protected:
    using Values = QList<double>;

    PNumberFieldTest() {
        auto* const layout = new QVBoxLayout(&window);
        layout->addWidget(&field);
        layout->addWidget(&other);
        field.setLocale(QLocale::c());
        field.setScale(PRangeScale({0, 200, 5}));
        field.showValue(50);
        EXPECT_TRUE(showActive(&window));
        field.setFocus();
    }

    ~PNumberFieldTest() override {
        field.setParent(nullptr);
        other.setParent(nullptr);
    }

    Values edits() const {
        Values values;
        for (const QList<QVariant>& arguments : edited)
            values.append(arguments.first().toDouble());
        return values;
    }

    QWidget window;
    PNumberField field;
    QLineEdit other;
    QSignalSpy edited{&field, &PNumberField::valueEdited};
};

} // namespace

TEST_F(PNumberFieldTest, shows_a_value_silently) {
    field.showValue(75);
    EXPECT_EQ(shownText(&field), u"75"_qs);
    EXPECT_EQ(field.value(), 75);
    EXPECT_EQ(edited.size(), 0);
}

TEST_F(PNumberFieldTest, shows_a_value_outside_the_range_as_it_is) {
    field.showValue(6503);
    EXPECT_EQ(shownText(&field), u"6503"_qs);
    EXPECT_EQ(field.value(), 6503);
}

TEST_F(PNumberFieldTest, leaves_such_a_value_alone_when_it_is_left_or_entered_again) {
    field.showValue(6503);
    QTest::keyClick(&field, Qt::Key_Return);
    enter(&field, u"6503"_qs);
    other.setFocus();
    EXPECT_EQ(field.value(), 6503);
    EXPECT_EQ(edited.size(), 0);
}

TEST_F(PNumberFieldTest, reports_typing_only_at_enter_and_once) {
    typeInto(&field, u"125"_qs);
    EXPECT_EQ(edited.size(), 0);
    QTest::keyClick(&field, Qt::Key_Return);
    other.setFocus();
    EXPECT_EQ(edits(), Values({125}));
}

TEST_F(PNumberFieldTest, reports_typing_when_the_focus_leaves) {
    typeInto(&field, u"125"_qs);
    other.setFocus();
    EXPECT_EQ(edits(), Values({125}));
}

TEST_F(PNumberFieldTest, changes_what_is_entered_to_the_nearest_value_of_the_range) {
    enter(&field, u"123"_qs);
    enter(&field, u"999"_qs);
    EXPECT_EQ(edits(), Values({125, 200}));
    EXPECT_EQ(shownText(&field), u"200"_qs);
}

TEST_F(PNumberFieldTest, undoes_typing_on_escape) {
    typeInto(&field, u"125"_qs);
    QTest::keyClick(&field, Qt::Key_Escape);
    other.setFocus();
    EXPECT_EQ(shownText(&field), u"50"_qs);
    EXPECT_EQ(edited.size(), 0);
}

TEST_F(PNumberFieldTest, shows_the_value_again_when_what_is_typed_is_not_a_number) {
    enter(&field, u"-"_qs);
    EXPECT_EQ(shownText(&field), u"50"_qs);
    EXPECT_EQ(edited.size(), 0);
}

TEST_F(PNumberFieldTest, accepts_only_the_letters_of_its_unit) {
    typeInto(&field, u"1x2y5"_qs);
    EXPECT_EQ(shownText(&field), u"125"_qs);
}

TEST_F(PNumberFieldTest, keeps_what_is_being_typed_while_the_value_moves) {
    typeInto(&field, u"12"_qs);
    field.showValue(80);
    field.setScale(PRangeScale({0, 300, 5}));
    EXPECT_EQ(shownText(&field), u"12"_qs);
    EXPECT_EQ(field.value(), 80);
    QTest::keyClicks(&field, u"5"_qs);
    QTest::keyClick(&field, Qt::Key_Return);
    EXPECT_EQ(edits(), Values({125}));
}

TEST_F(PNumberFieldTest, keeps_all_selected_while_the_value_moves) {
    field.selectAll();
    field.showValue(80);
    QTest::keyClicks(&field, u"120"_qs);
    QTest::keyClick(&field, Qt::Key_Return);
    EXPECT_EQ(edits(), Values({120}));
}

TEST_F(PNumberFieldTest, moves_by_steps_with_the_arrow_keys_and_by_ten_with_the_page_keys) {
    QTest::keyClick(&field, Qt::Key_Up);
    QTest::keyClick(&field, Qt::Key_Down);
    QTest::keyClick(&field, Qt::Key_PageUp);
    EXPECT_EQ(edits(), Values({55, 50, 100}));
}

TEST_F(PNumberFieldTest, moves_by_steps_with_the_wheel) {
    turnWheel(&field, 2);
    EXPECT_EQ(edits(), Values({60}));
}

TEST_F(PNumberFieldTest, counts_steps_from_what_was_typed) {
    typeInto(&field, u"100"_qs);
    QTest::keyClick(&field, Qt::Key_Up);
    EXPECT_EQ(edits(), Values({100, 105}));
}

TEST_F(PNumberFieldTest, does_not_step_beyond_the_ends) {
    field.showValue(200);
    QTest::keyClick(&field, Qt::Key_Up);
    field.showValue(0);
    QTest::keyClick(&field, Qt::Key_Down);
    EXPECT_EQ(edited.size(), 0);
}

TEST_F(PNumberFieldTest, steps_from_outside_to_the_nearest_end) {
    field.showValue(6503);
    QTest::keyClick(&field, Qt::Key_Up);
    EXPECT_EQ(edited.size(), 0);
    QTest::keyClick(&field, Qt::Key_Down);
    EXPECT_EQ(edits(), Values({200}));
}

TEST_F(PNumberFieldTest, reads_times_in_the_unit_shown) {
    field.setNumberText(std::make_shared<PTimeText>());
    field.setScale(PRangeScale({10, 50000000, 1}));
    field.showValue(12500);
    EXPECT_EQ(shownText(&field), u"12.5 ms"_qs);
    enter(&field, u"20"_qs);
    enter(&field, u"3 s"_qs);
    enter(&field, u"150 us"_qs);
    EXPECT_EQ(edits(), Values({20000, 3000000, 150}));
    EXPECT_EQ(shownText(&field), u"150 µs"_qs);
}

TEST_F(PNumberFieldTest, writes_as_its_locale_does) {
    field.setScale(PRangeScale({0, 200, 0.5}));
    field.setLocale(QLocale(u"de_DE"_qs));
    EXPECT_EQ(shownText(&field), u"50,0"_qs);
    enter(&field, u"12,5"_qs);
    EXPECT_EQ(edits(), Values({12.5}));
}

TEST_F(PNumberFieldTest, is_wide_enough_for_both_ends) {
    const int narrow = field.sizeHint().width();
    field.setScale(PRangeScale({-1e9, 1e9, 0.001}));
    EXPECT_GT(field.sizeHint().width(), narrow);
}

TEST_F(PNumberFieldTest, shows_nothing_for_what_is_not_a_number) {
    field.showValue(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(shownText(&field), QString());
    field.stepBy(1);
    EXPECT_EQ(edits(), Values());
}
