// SPDX-License-Identifier: MIT
#include <PCd/property/value/PCompositeFields.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <gtest/gtest.h>

/// A composite value as a plugin may have it.
struct Lamp {
    Q_GADGET
    Q_PROPERTY(quint16 power MEMBER power)
    Q_PROPERTY(qint32 colour MEMBER colour)
    Q_PROPERTY(double hours MEMBER hours)
    Q_PROPERTY(bool on MEMBER on)
    Q_PROPERTY(qint32 filter MEMBER filter)
    Q_PROPERTY(double angle MEMBER angle)
    Q_CLASSINFO("HostFields", "power hours")
    Q_CLASSINFO("HostFieldsWhile", "on=off")
    Q_CLASSINFO("Ranges", "filter=-1..4 angle=0..0.5")

public:
    quint16 power = 7;
    qint32 colour = -3;
    double hours = 1.5;
    bool on = true;
    qint32 filter = 0;
    double angle = 0;
};

namespace {

QVariant lamp() {
    return QVariant::fromValue(Lamp());
}

struct FieldRow {
    const char* name;
    const char* field;
    const char* text;
    QVariant expected; ///< invalid: refused
    const char* reason = "";
};

class CompositeField : public RowTest<FieldRow> {};

ROW_TEST(CompositeField, takes_what_it_can_hold_and_refuses_the_rest) {
    QVariant value = lamp();
    const FieldRow& row = GetParam();
    const QString field = QString::fromLatin1(row.field);
    const QVariant before = PCompositeFields::read(value, field);
    const PStatus status = PCompositeFields::write(value, field, QString::fromLatin1(row.text));
    EXPECT_EQ(status.isOk(), row.expected.isValid()) << status.reason().toStdString();
    EXPECT_EQ(PCompositeFields::read(value, field), row.expected.isValid() ? row.expected : before);
    EXPECT_EQ(status.reason(), QString::fromLatin1(row.reason));
}

ROWS(PCd, CompositeField,
     FieldRow{"a_small_number", "power", "65535", QVariant::fromValue<quint16>(65535)},
     FieldRow{"a_number_too_large",
              "power",
              "65536",
              {},
              "\"power\" cannot be \"65536\": expected an unsigned whole number of 16 bits"},
     FieldRow{"a_number_below_zero",
              "power",
              "-1",
              {},
              "\"power\" cannot be \"-1\": expected an unsigned whole number of 16 bits"},
     FieldRow{"a_negative_number", "colour", "-2147483648", -2147483647 - 1},
     FieldRow{"a_number_of_33_bits",
              "colour",
              "4294967296",
              {},
              "\"colour\" cannot be \"4294967296\": expected a whole number of 32 bits"},
     FieldRow{"a_fraction_in_a_whole_number",
              "colour",
              "1.5",
              {},
              "\"colour\" cannot be \"1.5\": expected a whole number of 32 bits"},
     FieldRow{"a_fraction", "hours", "12.25", 12.25},
     FieldRow{"no_number", "hours", "nan", {}, "\"hours\" cannot be \"nan\": expected a number"},
     FieldRow{"an_infinity", "hours", "inf", {}, "\"hours\" cannot be \"inf\": expected a number"},
     FieldRow{"the_least_of_a_range", "filter", "-1", -1},
     FieldRow{"the_most_of_a_range", "filter", "4", 4},
     FieldRow{"a_number_below_its_range",
              "filter",
              "-2",
              {},
              "\"filter\" cannot be \"-2\": expected a whole number from -1 to 4"},
     FieldRow{"a_number_above_its_range",
              "filter",
              "5",
              {},
              "\"filter\" cannot be \"5\": expected a whole number from -1 to 4"},
     FieldRow{"a_fraction_in_its_range", "angle", "0.5", 0.5},
     FieldRow{"a_fraction_above_its_range",
              "angle",
              "0.51",
              {},
              "\"angle\" cannot be \"0.51\": expected a number from 0 to 0.5"},
     FieldRow{"a_switch", "on", "off", false},
     FieldRow{"no_switch", "on", "maybe", {}, "\"on\" cannot be \"maybe\": expected on or off"},
     FieldRow{"an_unknown_field",
              "weight",
              "1",
              {},
              "there is no field \"weight\": expected one of power, colour, hours, on, "
              "filter, angle"},
     FieldRow{"nothing",
              "power",
              "",
              {},
              "\"power\" cannot be \"\": expected an unsigned whole number of 16 bits"});

} // namespace

TEST(PCompositeFields, are_named_in_the_order_of_their_declaration) {
    EXPECT_TRUE(PCompositeFields::isComposite(lamp()));
    EXPECT_EQ(PCompositeFields::names(lamp()).join(u' '), u"power colour hours on filter angle"_qs);
    EXPECT_EQ(PCompositeFields::toText(lamp()),
              u"power=7 colour=-3 hours=1.5 on=on filter=0 angle=0"_qs);
}

TEST(PCompositeFields, of_the_host_are_taken_from_the_cached_value_while_their_condition_holds) {
    const auto makeLamp = [](quint16 power, qint32 colour, double hours, bool on) {
        Lamp lamp;
        lamp.power = power;
        lamp.colour = colour;
        lamp.hours = hours;
        lamp.on = on;
        return QVariant::fromValue(lamp);
    };
    const QVariant known = makeLamp(1, 2, 3, false);
    EXPECT_EQ(
        PCompositeFields::toText(PCompositeFields::withHostFields(makeLamp(7, 8, 9, false), known)),
        u"power=1 colour=8 hours=3 on=off filter=0 angle=0"_qs);
    EXPECT_EQ(
        PCompositeFields::toText(PCompositeFields::withHostFields(makeLamp(7, 8, 9, true), known)),
        u"power=7 colour=8 hours=9 on=on filter=0 angle=0"_qs);
    EXPECT_EQ(PCompositeFields::withHostFields(5, known), QVariant(5));
    EXPECT_EQ(PCompositeFields::withHostFields(5, 6), QVariant(5));
    EXPECT_FALSE(PCompositeFields::withHostFields(QVariant(), QVariant()).isValid());
}

namespace {

struct GivenRow {
    const char* name;
    const char* field;
    QVariant given;
    QVariant expected; ///< invalid: refused
};

class GivenField : public RowTest<GivenRow> {};

ROW_TEST(GivenField, is_taken_in_a_type_of_files_that_fits_it_and_refused_otherwise) {
    QVariant value = lamp();
    const GivenRow& row = GetParam();
    const QString field = QString::fromLatin1(row.field);
    const QVariant before = PCompositeFields::read(value, field);
    EXPECT_EQ(PCompositeFields::assign(value, field, row.given), row.expected.isValid());
    EXPECT_EQ(PCompositeFields::read(value, field), row.expected.isValid() ? row.expected : before);
}

ROWS(PCd, GivenField, GivenRow{"a_number", "power", 65535, QVariant::fromValue<quint16>(65535)},
     GivenRow{"a_number_too_large", "power", 65536, {}},
     GivenRow{"a_number_below_zero", "power", -1, {}},
     GivenRow{"a_number_of_64_bits", "colour", qlonglong(5), 5},
     GivenRow{"a_number_of_64_bits_too_large", "colour", qlonglong(1) << 32, {}},
     GivenRow{"a_fraction_in_a_whole_number", "colour", 2.0, {}},
     GivenRow{"a_fraction", "hours", 2.5, 2.5}, GivenRow{"a_whole_number", "hours", 2, 2.0},
     GivenRow{"a_switch", "on", false, false}, GivenRow{"a_number_for_a_switch", "on", 0, {}},
     GivenRow{"a_switch_for_a_number", "power", true, {}},
     GivenRow{"a_text_for_a_number", "power", u"7"_qs, {}}, GivenRow{"nothing", "power", {}, {}},
     GivenRow{"an_unknown_field", "weight", 1, {}});

} // namespace

TEST(PCompositeFields, outside_its_range_is_taken_from_a_file_only_if_it_has_it_already) {
    QVariant value = QVariant::fromValue(Lamp{7, -3, 1.5, true, 9, 0});
    EXPECT_TRUE(PCompositeFields::assign(value, u"filter"_qs, 9));
    EXPECT_FALSE(PCompositeFields::assign(value, u"filter"_qs, 8));
    EXPECT_EQ(PCompositeFields::read(value, u"filter"_qs), 9);
}

TEST(PCompositeFields, have_types_whatever_their_ranges) {
    EXPECT_TRUE(PCompositeFields::isOfType(lamp(), u"filter"_qs, 9));
    EXPECT_FALSE(PCompositeFields::isOfType(lamp(), u"filter"_qs, u"9"_qs));
    EXPECT_FALSE(PCompositeFields::isOfType(lamp(), u"weight"_qs, 9));
}

TEST(PCompositeFields, say_what_they_can_be) {
    const auto expectation = [](const char* field) {
        return PCompositeFields::expectation(lamp(), QString::fromLatin1(field));
    };
    EXPECT_EQ(expectation("power"), u"an unsigned whole number of 16 bits"_qs);
    EXPECT_EQ(expectation("colour"), u"a whole number of 32 bits"_qs);
    EXPECT_EQ(expectation("hours"), u"a number"_qs);
    EXPECT_EQ(expectation("on"), u"on or off"_qs);
    EXPECT_EQ(expectation("weight"), QString());
}

TEST(PCompositeFields, plain_values_have_none) {
    QVariant plain = 5;
    EXPECT_FALSE(PCompositeFields::isComposite(plain));
    EXPECT_TRUE(PCompositeFields::names(QVariant()).isEmpty());
    EXPECT_FALSE(PCompositeFields::read(plain, u"power"_qs).isValid());
    EXPECT_FALSE(PCompositeFields::write(plain, u"power"_qs, u"1"_qs).isOk());
}

#include "PCompositeFieldsTest.moc"
