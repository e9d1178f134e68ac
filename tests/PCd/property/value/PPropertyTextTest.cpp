// SPDX-License-Identifier: MIT
#include <PCd/property/value/PPropertyText.h>

#include <PCd/FakeDevice.h>
#include <PCd/FakeProperty.h>
#include <PCd/PropertyValues.h>

#include <PCd/PEnumeration.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <gtest/gtest.h>

namespace {

/// Rotations whose titles, names and numbers are all different.
QVariant numberedTurns() {
    PEnumeration choices;
    choices.addItem(itemId(0), u"none"_qs, u"0°"_qs, "1");
    choices.addItem(itemId(1), u"quarter"_qs, u"90°"_qs, "130");
    return QVariant::fromValue(choices);
}

/// A property that belongs to a device.
class TextProperty {
public:
    explicit TextProperty(const QVariant& value, const QVariant& range = {})
        : property(new FakeProperty("any", value)) {
        property->rangeInDevice = range;
        device.makeProperties = [this] { return QList<PDeviceProperty*>{property}; };
        device.supportProperties();
    }

    QVariant toValue(const QString& text) const {
        return PPropertyText::toValue(text, property->valueInner(), property->rangeInner());
    }

    FakeDevice device;
    FakeProperty* property; // owned by the device
};

struct TextRow {
    const char* name;
    QVariant current;
    const char* text;
    QVariant value; ///< invalid: the text has no value
};

class TextFromUser : public RowTest<TextRow> {};

ROW_TEST(TextFromUser, means_this_value) {
    const TextProperty property(GetParam().current);
    EXPECT_EQ(property.toValue(QString::fromUtf8(GetParam().text)), GetParam().value);
}

const TextRow textRows[] = {
    {"a_number", 5, "12", 12},
    {"a_negative_number", 5, "-12", -12},
    {"a_number_among_blanks", 5, " 12 ", 12},
    {"no_number_that_is_a_word", 5, "many", {}},
    {"no_number_with_a_point", 5, "1.5", {}},
    {"a_number_with_a_point", 0.5, "1.25", 1.25},
    {"a_number_with_an_exponent", 0.5, "1e-3", 0.001},
    {"a_whole_number_for_one_with_a_point", 0.5, "2", 2.0},
    {"no_number_without_end", 0.5, "inf", {}},
    {"no_number_with_a_point_that_is_a_word", 0.5, "long", {}},
    {"no_number_beyond_32_bits", 5, "2147483648", {}},
    {"no_number_without_text", 5, "", {}},
    {"on", false, "on", true},
    {"on_in_capitals", false, "ON", true},
    {"true_for_on", false, "true", true},
    {"yes_for_on", false, "yes", true},
    {"1_for_on", false, "1", true},
    {"off", true, "off", false},
    {"false_for_off", true, "false", false},
    {"0_for_off", true, "0", false},
    {"no_switch_that_is_2", true, "2", {}},
    {"a_region", QRect(0, 0, 1, 1), "10,20,30,40", QRect(10, 20, 30, 40)},
    {"a_region_with_blanks", QRect(0, 0, 1, 1), "10, 20, 30, 40", QRect(10, 20, 30, 40)},
    {"no_region_of_three_numbers", QRect(0, 0, 1, 1), "10,20,30", {}},
    {"no_region_of_five_numbers", QRect(0, 0, 1, 1), "1,2,3,4,5", {}},
    {"no_region_with_a_word", QRect(0, 0, 1, 1), "1,2,3,all", {}},
    {"no_region_that_ends_beyond_32_bits", QRect(0, 0, 1, 1), "2147483647,0,4,4", {}},
    {"no_region_that_begins_and_ends_before", QRect(0, 0, 1, 1), "0,-2147483648,4,-4", {}},
    {"nothing_for_a_type_without_text", QSize(1, 1), "1", {}},
};

ROWS_IN(PPropertyText, TextFromUser, textRows);

struct ChoiceRow {
    const char* name;
    const char* text;
    int item; ///< -1: none
};

class ChoiceFromUser : public RowTest<ChoiceRow> {};

ROW_TEST(ChoiceFromUser, means_this_item) {
    const TextProperty property(itemId(0), numberedTurns());
    const QVariant expected =
        GetParam().item < 0 ? QVariant() : QVariant(itemId(ushort(GetParam().item)));
    EXPECT_EQ(property.toValue(QString::fromUtf8(GetParam().text)), expected);
}

ROWS(PPropertyText, ChoiceFromUser, ChoiceRow{"a_title", "90°", 1},
     ChoiceRow{"a_name", "quarter", 1}, ChoiceRow{"a_name_in_capitals", "QUARTER", 1},
     ChoiceRow{"a_number_of_the_device", "130", 1}, ChoiceRow{"the_first_item", "0°", 0},
     ChoiceRow{"no_unknown_word", "half", -1}, ChoiceRow{"no_position", "0", -1},
     ChoiceRow{"no_empty_text", "", -1});

TEST(PPropertyText, takes_a_title_before_a_name_and_a_name_before_a_number) {
    PEnumeration choices;
    choices.addItem(itemId(0), u"b"_qs, u"c"_qs, "a");
    choices.addItem(itemId(1), u"a"_qs, u"b"_qs, "c");
    const TextProperty property(itemId(0), QVariant::fromValue(choices));
    EXPECT_EQ(property.toValue(u"b"_qs), QVariant(itemId(1)));
    EXPECT_EQ(property.toValue(u"a"_qs), QVariant(itemId(1)));
}

TEST(PPropertyText, shows_values_as_users_write_them) {
    EXPECT_EQ(PPropertyText::ofValue(12, {}), u"12"_qs);
    EXPECT_EQ(PPropertyText::ofValue(true, {}), u"on"_qs);
    EXPECT_EQ(PPropertyText::ofValue(false, {}), u"off"_qs);
    EXPECT_EQ(PPropertyText::ofValue(QRect(1, 2, 3, 4), {}), u"1,2,3,4"_qs);
    EXPECT_EQ(PPropertyText::ofValue(itemId(1), numberedTurns()), u"90°"_qs);
    EXPECT_EQ(PPropertyText::ofValue(QByteArray("\x1b[2J"), {}), u"G1sySg=="_qs);
    EXPECT_EQ(PPropertyText::ofValue(QVariant(), {}), QString());
    EXPECT_EQ(PPropertyText::ofValue(QSize(1, 2), {}), u"<QSize>"_qs);
}

TEST(PPropertyText, shows_a_choice_that_is_not_an_item_by_its_id) {
    EXPECT_EQ(PPropertyText::ofValue(itemId(7), numberedTurns()), itemId(7).toString());
}

TEST(PPropertyText, shows_a_region_whose_corners_are_as_far_apart_as_can_be) {
    EXPECT_EQ(PPropertyText::ofRegion(QRect(QPoint(least, least), QPoint(most, most))),
              u"-2147483648,-2147483648,4294967296,4294967296"_qs);
}

TEST(PPropertyText, shortens_what_would_flood_or_steer_a_terminal) {
    EXPECT_EQ(PPropertyText::shortened(u"plain"_qs), u"plain"_qs);
    EXPECT_EQ(PPropertyText::shortened(u"a\x1b[2Jb\nc"_qs), u"a\\x1b[2Jb\\nc"_qs);
    EXPECT_EQ(PPropertyText::shortened(QString(1000, u'x')), QString(60, u'x') + u"…"_qs);
}

} // namespace
