// SPDX-License-Identifier: MIT
#include <PCd/property/PPropertyCheck.h>

#include <PCd/FakeDevice.h>
#include <PCd/FakeProperty.h>
#include <PCd/PropertyValues.h>

#include <PCd/PEnumeration.h>
#include <PCd/PScanAreaRange.h>

#include <PCore/PMinMaxRange.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <gtest/gtest.h>

/// A composite value with declared fields.
struct Shutter {
    Q_GADGET
    Q_PROPERTY(int speed MEMBER speed)
    Q_PROPERTY(bool open MEMBER open)

public:
    int speed = 0;
    bool open = false;
};

namespace {

QVariant makeRange(int minimum, int maximum, int step = 1) {
    return QVariant::fromValue(PMinMaxRange<int>{minimum, maximum, step});
}

QVariant makeRealRange(double minimum, double maximum) {
    return QVariant::fromValue(PMinMaxRange<double>{minimum, maximum, 0});
}

QVariant turns() {
    PEnumeration choices;
    choices.addItem(itemId(0), u"none"_qs, u"0°"_qs, "0");
    choices.addItem(itemId(1), u"quarter"_qs, u"90°"_qs, "90");
    return QVariant::fromValue(choices);
}

/// The range of a sensor whose width is not a multiple of the step, with offsets in steps of 2.
QVariant sensor(const QRect& bounds = QRect(0, 0, 101, 80)) {
    return QVariant::fromValue(PScanAreaRange{bounds, 8, 4, 4, 4, 2});
}

/// A property that belongs to a device.
class CheckedProperty {
public:
    explicit CheckedProperty(const QVariant& value, const QVariant& range = {})
        : property(new FakeProperty("gain", value)) {
        property->rangeInDevice = range;
        device.makeProperties = [this] { return QList<PDeviceProperty*>{property}; };
        device.supportProperties();
        property->calls.clear();
    }

    FakeDevice device;
    FakeProperty* property; // owned by the device
};

struct CheckRow {
    const char* name;
    QVariant current;
    QVariant range;
    QVariant value;
    bool isTaken;
};

class CheckedValue : public RowTest<CheckRow> {};

ROW_TEST(CheckedValue, is_taken_or_refused_without_a_call_to_the_device) {
    const CheckedProperty checked(GetParam().current, GetParam().range);
    EXPECT_EQ(PPropertyCheck::check(*checked.property, GetParam().value).isOk(),
              GetParam().isTaken);
    EXPECT_EQ(checked.property->calls, QStringList());
}

const CheckRow checkRows[] = {
    {"the_minimum", 5, makeRange(-100, 100), -100, true},
    {"the_maximum", 5, makeRange(-100, 100), 100, true},
    {"below_the_minimum", 5, makeRange(-100, 100), -101, false},
    {"above_the_maximum", 5, makeRange(-100, 100), 101, false},
    {"on_a_step_from_the_minimum", 5, makeRange(3, 13, 5), 8, true},
    {"between_the_steps", 5, makeRange(3, 13, 5), 10, false},
    {"in_the_widest_range", 5, makeRange(least, most), most, true},
    {"a_step_in_the_widest_range", 5, makeRange(least, most, 2), most, false},
    {"in_a_range_of_one_value", 5, makeRange(0, 0, 1), 0, true},
    {"outside_a_range_of_one_value", 5, makeRange(0, 0, 1), 2, false},
    {"any_number_where_there_is_no_range", 5, makeRange(0, 0, 0), 2, true},
    {"no_text_where_there_is_no_range", 5, makeRange(0, 0, 0), u"2"_qs, false},
    {"a_text_for_a_number", 5, makeRange(0, 9), u"5"_qs, false},
    {"a_double_for_a_number", 5, makeRange(0, 9), 5.0, false},
    {"nothing_for_a_number", 5, makeRange(0, 9), {}, false},
    {"a_number_that_is_not_whole", 5.0, makeRealRange(0.5, 9), 0.5, true},
    {"one_that_is_not_whole_above_the_maximum", 5.0, makeRealRange(0.5, 9), 9.01, false},
    {"one_that_is_not_whole_below_the_minimum", 5.0, makeRealRange(0.5, 9), 0.49, false},
    {"any_number_where_there_is_no_such_range", 5.0, makeRealRange(0, 0), -7.5, true},
    {"a_whole_one_for_one_that_is_not", 5.0, makeRealRange(0.5, 9), 5, false},
    {"a_switch", false, {}, true, true},
    {"a_number_for_a_switch", false, {}, 1, false},
    {"nothing_for_a_switch", false, {}, {}, false},
    {"an_item", itemId(0), turns(), itemId(1), true},
    {"no_item", itemId(0), turns(), itemId(2), false},
    {"a_text_for_a_choice", itemId(0), turns(), u"none"_qs, false},
    {"a_region", QRect(), sensor(), QRect(2, 4, 8, 4), true},
    {"the_whole_between_the_steps", QRect(), sensor(), QRect(0, 0, 101, 80), true},
    {"a_region_too_narrow", QRect(), sensor(), QRect(0, 0, 4, 4), false},
    {"a_region_too_low", QRect(), sensor(), QRect(0, 0, 8, 0), false},
    {"a_width_between_the_steps", QRect(), sensor(), QRect(0, 0, 10, 4), false},
    {"a_height_between_the_steps", QRect(), sensor(), QRect(0, 0, 8, 6), false},
    {"an_offset_to_the_right_between_the_steps", QRect(), sensor(), QRect(1, 0, 8, 4), false},
    {"an_offset_down_between_the_steps", QRect(), sensor(), QRect(0, 1, 8, 4), false},
    {"a_region_over_the_right_edge", QRect(), sensor(), QRect(96, 0, 8, 4), false},
    {"a_region_over_the_lower_edge", QRect(), sensor(), QRect(0, 78, 8, 4), false},
    {"a_region_before_the_left_edge", QRect(), sensor(), QRect(-2, 0, 8, 4), false},
    {"a_region_turned_inside_out", QRect(), sensor(), QRect(20, 20, -8, -4), false},
    {"a_region_as_large_as_can_be", QRect(), sensor(),
     QRect(QPoint(least, least), QPoint(most, most)), false},
    {"a_region_of_an_unknown_sensor", QRect(), sensor(QRect()), QRect(0, 0, 8, 4), false},
    {"no_region_of_an_unknown_sensor", QRect(), sensor(QRect()), QRect(), false},
    {"a_composite_of_its_type", QSize(1, 2), {}, QSize(3, 4), true},
    {"a_composite_of_another_type", QSize(1, 2), {}, QPoint(3, 4), false},
};

ROWS_IN(PPropertyCheck, CheckedValue, checkRows);

TEST(PPropertyCheck, refuses_any_value_for_an_action) {
    const CheckedProperty checked(5);
    checked.property->setType(PCD::DevicePropertyType::Action);
    EXPECT_EQ(PPropertyCheck::check(*checked.property, 5).reason(),
              u"\"gain\" is an action and takes no value"_qs);
}

TEST(PPropertyCheck, says_property_value_and_what_was_expected) {
    const CheckedProperty checked(5, makeRange(0, 10, 5));
    EXPECT_EQ(PPropertyCheck::check(*checked.property, 7).reason(),
              u"\"gain\" cannot be 7: expected a whole number from 0 to 10 in steps "
              "of 5"_qs);
}

TEST(PPropertyCheck, lets_a_switch_be_on_or_off_while_the_device_does_not_report_which) {
    CheckedProperty checked(true);
    checked.property->setType(PCD::DevicePropertyType::Switch);
    checked.property->failsToRead = true;
    PPropertyCheck::send(*checked.property, true);
    ASSERT_FALSE(checked.property->valueInner().isValid());
    EXPECT_EQ(PPropertyCheck::expectation(*checked.property), u"on or off"_qs);
    EXPECT_TRUE(PPropertyCheck::check(*checked.property, false).isOk());
    EXPECT_FALSE(PPropertyCheck::check(*checked.property, 1).isOk());
}

TEST(PPropertyCheck, uses_the_range_that_is_given) {
    const CheckedProperty checked(5, makeRange(0, 10));
    EXPECT_TRUE(PPropertyCheck::check(*checked.property, 20, makeRange(0, 20)).isOk());
    EXPECT_EQ(PPropertyCheck::check(*checked.property, 9, makeRange(0, 3)).reason(),
              u"\"gain\" cannot be 9: expected a whole number from 0 to 3"_qs);
}

struct ExpectationRow {
    const char* name;
    QVariant current;
    QVariant range;
    const char* words;
};

class Expectation : public RowTest<ExpectationRow> {};

ROW_TEST(Expectation, is_put_into_words) {
    const CheckedProperty checked(GetParam().current, GetParam().range);
    EXPECT_EQ(PPropertyCheck::expectation(*checked.property), QString::fromUtf8(GetParam().words));
}

ROWS(PPropertyCheck, Expectation,
     ExpectationRow{"of_a_number", 5, makeRange(-2, 7), "a whole number from -2 to 7"},
     ExpectationRow{"of_a_number_without_a_range", 5, makeRange(0, 0, 0), "a whole number"},
     ExpectationRow{"of_a_number_that_is_not_whole", 5.0, makeRealRange(0.5, 60),
                    "a number from 0.5 to 60"},
     ExpectationRow{"of_one_that_is_not_whole_without_a_range", 5.0, makeRealRange(0, 0),
                    "a number"},
     ExpectationRow{"of_a_switch", true, {}, "on or off"},
     ExpectationRow{"of_a_choice", itemId(0), turns(), "one of \"0°\", \"90°\""},
     ExpectationRow{"of_a_region", QRect(), sensor(),
                    "a region x,y,width,height inside 0,0,101,80, at least 8 x 4 pixels, in "
                    "steps of 4 x 4, or the whole area"},
     ExpectationRow{"of_a_region_of_an_unknown_sensor", QRect(), sensor(QRect()),
                    "a region, but the camera reports no area for it"},
     ExpectationRow{
         "of_what_was_not_read", QVariant(), {}, "a value, but the camera does not report it"},
     ExpectationRow{"of_a_composite",
                    QVariant::fromValue(Shutter()),
                    {},
                    "one field at a time, gain.FIELD=VALUE with one of the fields speed, open"},
     ExpectationRow{"of_another_type", QSize(), {}, "a value of type QSize"});

TEST(PPropertyCheck, trusts_a_device_that_has_the_value_whatever_it_returned) {
    class Reversed : public FakeProperty {
    public:
        using FakeProperty::FakeProperty;
        bool trySetValue(QVariant value) override { return !FakeProperty::trySetValue(value); }
    };
    Reversed property("roi", 5);
    EXPECT_TRUE(PPropertyCheck::setAndVerify(property, 7));
    EXPECT_EQ(property.valueInner(), QVariant(7));
}

TEST(PPropertyCheck, does_not_trust_a_device_that_returns_true_and_has_another_value) {
    const CheckedProperty checked(5);
    checked.property->becomes = 6;
    EXPECT_FALSE(PPropertyCheck::setAndVerify(*checked.property, 7));
    EXPECT_EQ(checked.property->valueInner(), QVariant(6));
}

TEST(PPropertyCheck, does_not_know_what_a_device_has_if_it_cannot_be_read_back) {
    const CheckedProperty checked(5);
    checked.property->failsToRead = true;
    EXPECT_EQ(PPropertyCheck::send(*checked.property, 7), PPropertyCheck::Outcome::Unread);
    EXPECT_FALSE(PPropertyCheck::setAndVerify(*checked.property, 7));
}

TEST(PPropertyCheck, does_not_confuse_other_readings_that_fail_with_its_own) {
    class Reading : public FakeProperty {
    public:
        using FakeProperty::FakeProperty;
        bool trySetValue(QVariant value) override {
            PReadWatch::reportFailure();
            return FakeProperty::trySetValue(value);
        }
    };
    Reading property("tint", 5);
    FakeProperty other("hue", 5);
    other.failsToRead = true;
    QObject::connect(&property, &PDeviceProperty::valueChanged,
                     [&other] { other.updateValueFromDevice(); });
    EXPECT_EQ(PPropertyCheck::send(property, 7), PPropertyCheck::Outcome::Taken);
    property.becomes = 6;
    EXPECT_EQ(PPropertyCheck::send(property, 8), PPropertyCheck::Outcome::Refused);
}

} // namespace

#include "PPropertyCheckTest.moc"
