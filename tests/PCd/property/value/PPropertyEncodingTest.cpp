// SPDX-License-Identifier: MIT
#include <PCd/property/value/PPropertyEncoding.h>

#include <PCd/PropertyValues.h>
#include <PCd/property/value/StreamedPair.h>

#include <PCd/PEnumeration.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <QRect>

#include <gtest/gtest.h>

namespace {

QVariant turnsWithOneUnnamed() {
    PEnumeration choices;
    choices.addItem(itemId(0), u"0"_qs, u"0°"_qs, "10");
    choices.addItem(itemId(1), u"90"_qs, u"90°"_qs, "0");
    choices.addItem(itemId(2), QString(), u"odd"_qs, "1");
    return QVariant::fromValue(choices);
}

QVariant makePair(int saved, int leftOut) {
    return QVariant::fromValue(StreamedPair{saved, leftOut});
}

const QByteArray seven = QByteArray::fromHex("00000007");

} // namespace

TEST(PPropertyEncoding, of_a_plain_value_is_the_value) {
    for (const QVariant& value : {QVariant(7), QVariant(true), QVariant(QRect(1, 2, 3, 4)),
                                  QVariant(1.5), QVariant(u"text"_qs)}) {
        EXPECT_EQ(PPropertyEncoding::toForm(value, {}), value);
        EXPECT_EQ(PPropertyEncoding::fromForm(value, value, {}), value);
    }
}

TEST(PPropertyEncoding, of_a_number_may_be_a_whole_one_in_a_file) {
    for (const QVariant& form : {QVariant(20), QVariant(20LL)}) {
        const QVariant value = PPropertyEncoding::fromForm(form, 0.5, {});
        EXPECT_EQ(value.typeId(), QMetaType::Double);
        EXPECT_EQ(value, 20.0);
    }
    EXPECT_FALSE(PPropertyEncoding::fromForm(true, 0.5, {}).isValid());
    EXPECT_FALSE(PPropertyEncoding::fromForm(0.5, 20, {}).isValid());
}

TEST(PPropertyEncoding, of_a_choice_is_its_untranslated_name) {
    EXPECT_EQ(PPropertyEncoding::toForm(itemId(1), turnsWithOneUnnamed()), QVariant(u"90"_qs));
    EXPECT_EQ(PPropertyEncoding::fromForm(u"90"_qs, itemId(0), turnsWithOneUnnamed()),
              QVariant(itemId(1)));
}

TEST(PPropertyEncoding, of_a_choice_without_a_name_is_its_id) {
    EXPECT_EQ(PPropertyEncoding::toForm(itemId(2), turnsWithOneUnnamed()), QVariant(itemId(2)));
    EXPECT_EQ(PPropertyEncoding::fromForm(itemId(2), itemId(0), turnsWithOneUnnamed()),
              QVariant(itemId(2)));
}

TEST(PPropertyEncoding, of_a_composite_is_the_bytes_of_its_stream) {
    EXPECT_EQ(PPropertyEncoding::toForm(makePair(7, 9), {}), QVariant(seven));
}

TEST(PPropertyEncoding, of_a_composite_keeps_what_the_bytes_leave_out) {
    const QVariant value = PPropertyEncoding::fromForm(seven, makePair(1, 5), {});
    ASSERT_TRUE(value.isValid());
    EXPECT_EQ(value.value<StreamedPair>().saved, 7);
    EXPECT_EQ(value.value<StreamedPair>().leftOut, 5);
}

TEST(PPropertyEncoding, of_a_type_without_a_stream_is_none) {
    EXPECT_FALSE(PPropertyEncoding::toForm(QVariant::fromValue<void*>(nullptr), {}).isValid());
    EXPECT_FALSE(PPropertyEncoding::toForm(QVariant(), {}).isValid());
    EXPECT_FALSE(PPropertyEncoding::toForm(QVariant(), turnsWithOneUnnamed()).isValid());
}

namespace {

struct FormRow {
    const char* name;
    QVariant form;
    QVariant current;
    QVariant range;
};

class BadForm : public RowTest<FormRow> {};

ROW_TEST(BadForm, makes_no_value) {
    const FormRow& row = GetParam();
    EXPECT_FALSE(PPropertyEncoding::fromForm(row.form, row.current, row.range).isValid());
}

} // namespace

ROWS(PPropertyEncoding, BadForm,
     FormRow{"an_unknown_name", u"45"_qs, itemId(0), turnsWithOneUnnamed()},
     FormRow{"a_title", u"90°"_qs, itemId(0), turnsWithOneUnnamed()},
     FormRow{"a_number_that_reads_like_a_name", 90, itemId(0), turnsWithOneUnnamed()},
     FormRow{"an_unknown_id", itemId(9), itemId(0), turnsWithOneUnnamed()},
     FormRow{"no_form_for_a_choice", {}, itemId(0), turnsWithOneUnnamed()},
     FormRow{"a_text_for_a_number", u"7"_qs, 7, {}}, FormRow{"a_double_for_a_number", 7.0, 7, {}},
     FormRow{"a_number_for_a_switch", 1, true, {}}, FormRow{"no_form_for_a_number", {}, 7, {}},
     FormRow{"too_few_bytes", seven.left(3), makePair(0, 0), {}},
     FormRow{"too_many_bytes", seven + '\0', makePair(0, 0), {}},
     FormRow{"bytes_for_a_number", seven, 7, {}},
     FormRow{"a_number_for_a_composite", 7, makePair(0, 0), {}});

TEST(PPropertyEncoding, is_equal_to_another_of_its_type_only) {
    EXPECT_TRUE(PPropertyEncoding::areEqual(1, 1));
    EXPECT_FALSE(PPropertyEncoding::areEqual(1, 2));
    EXPECT_FALSE(PPropertyEncoding::areEqual(1, u"1"_qs));
    EXPECT_FALSE(PPropertyEncoding::areEqual(1, true));
    EXPECT_TRUE(PPropertyEncoding::areEqual(QVariant(), QVariant()));
}

TEST(PPropertyEncoding, compares_values_by_their_encodings) {
    EXPECT_TRUE(PPropertyEncoding::isSame(7, 7, {}));
    EXPECT_FALSE(PPropertyEncoding::isSame(7, 8, {}));
    EXPECT_TRUE(PPropertyEncoding::isSame(makePair(7, 1), makePair(7, 2), {}));
    EXPECT_FALSE(PPropertyEncoding::isSame(makePair(7, 1), makePair(8, 1), {}));
    EXPECT_TRUE(PPropertyEncoding::isSame(itemId(1), itemId(1), turnsWithOneUnnamed()));
    EXPECT_FALSE(PPropertyEncoding::isSame(QVariant(), QVariant(), {}));
}

TEST(PPropertyEncoding, of_a_choice_that_is_not_known_is_none_and_not_the_first) {
    EXPECT_FALSE(PPropertyEncoding::toForm(QVariant(), turnsWithOneUnnamed()).isValid());
    EXPECT_FALSE(PPropertyEncoding::named(QVariant(), turnsWithOneUnnamed()).isValid());
}
