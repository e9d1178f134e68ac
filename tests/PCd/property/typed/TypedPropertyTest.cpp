// SPDX-License-Identifier: MIT
// The typed layers between the host's variants and the device slots of a property.
#include <PCd/FakeDevice.h>
#include <PCd/property/typed/TypedFakes.h>

#include <PCore/state/PJsonReader.h>
#include <PCore/state/PJsonWriter.h>

#include <support/QtPrinters.h>

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace {

const QUuid onId = offAndOn().items().at(1).id;

template <typename Property>
Property* takenBy(FakeDevice& device, Property* property) {
    device.makeProperties = [property] { return QList<PDeviceProperty*>{property}; };
    device.supportProperties();
    property->calls.clear();
    return property;
}

} // namespace

// ---- Setting through a variant.

TEST(TypedProperty, a_number_gets_what_its_variant_holds) {
    FakeNumber number;
    EXPECT_TRUE(number.trySetValue(7));
    EXPECT_EQ(number.sent, QList<int>{7});
}

TEST(TypedProperty, a_number_gets_zero_from_an_invalid_variant) {
    FakeNumber number;
    EXPECT_TRUE(number.trySetValue(QVariant()));
    EXPECT_EQ(number.sent, QList<int>{0});
}

TEST(TypedProperty, a_switch_gets_false_from_an_invalid_variant) {
    FakeSwitch property(true);
    EXPECT_TRUE(property.trySetValue(QVariant()));
    EXPECT_EQ(property.sent, QList<bool>{false});
}

TEST(TypedProperty, a_choice_gets_the_null_id_from_an_invalid_variant) {
    FakeChoice choice(onId);
    EXPECT_TRUE(choice.trySetValue(QVariant()));
    EXPECT_EQ(choice.sent, QList<QUuid>{QUuid()});
}

TEST(TypedProperty, a_region_gets_the_null_rectangle_from_an_invalid_variant) {
    FakeRegion region;
    EXPECT_TRUE(region.trySetValue(QVariant()));
    EXPECT_EQ(region.sent, QList<QRect>{QRect()});
}

TEST(TypedProperty, a_number_in_a_text_is_converted) {
    FakeNumber number;
    number.trySetValue(u"42"_qs);
    number.trySetValue(u"many"_qs);
    EXPECT_EQ(number.sent, (QList<int>{42, 0}));
}

TEST(TypedProperty, setting_returns_what_the_device_returns_and_stores_nothing) {
    FakeNumber number;
    QSignalSpy untyped(&number, &PDeviceProperty::valueChanged);
    number.answer = false;
    EXPECT_FALSE(number.trySetValue(7));
    number.answer = true;
    EXPECT_TRUE(number.trySetValue(8));
    EXPECT_FALSE(number.valueInner().isValid());
    EXPECT_EQ(untyped.count(), 0);
}

// ---- Getting.

TEST(TypedProperty, every_get_reads_the_device) {
    FakeNumber number(3);
    EXPECT_EQ(number.tryGetValue(), QVariant(3));
    number.inDevice = 4;
    EXPECT_EQ(number.tryGetValue(), QVariant(4));
    EXPECT_EQ(number.calls.count(), 2);
}

TEST(TypedProperty, a_range_is_read_from_the_device) {
    FakeNumber number(3, {1, 9, 2});
    EXPECT_EQ(number.tryGetRange(), QVariant::fromValue(PMinMaxRange<int>{1, 9, 2}));
    FakeChoice choice;
    EXPECT_EQ(choice.tryGetRange(), QVariant::fromValue(offAndOn()));
    FakeRegion region;
    EXPECT_EQ(region.tryGetRange(), QVariant::fromValue(region.rangeInDevice));
}

TEST(TypedProperty, a_switch_has_no_range_and_does_not_read_one) {
    FakeSwitch property;
    EXPECT_FALSE(property.tryGetRange().isValid());
    EXPECT_EQ(property.calls, QStringList());
}

// ---- Conversions.

TEST(TypedProperty, what_cannot_be_converted_is_the_types_default) {
    const QVariant text(u"no such thing"_qs);
    EXPECT_EQ(FakeNumber().convertToT(QVariant()), 0);
    EXPECT_EQ(FakeSwitch().convertToT(QVariant()), false);
    EXPECT_EQ(FakeChoice().convertToT(text), QUuid());
    EXPECT_EQ(FakeRegion().convertToT(text), QRect());
    EXPECT_EQ(FakeChoice().convertToR(text), PEnumeration());
    EXPECT_EQ(FakeRegion().convertToR(text), PScanAreaRange());
}

TEST(TypedProperty, what_goes_into_a_variant_comes_out_again) {
    EXPECT_EQ(FakeNumber().convertToT(FakeNumber().convertFromT(-3)), -3);
    EXPECT_EQ(FakeNumber().convertToR(FakeNumber().convertFromR({1, 2, 3})),
              (PMinMaxRange<int>{1, 2, 3}));
    EXPECT_EQ(FakeChoice().convertToT(FakeChoice().convertFromT(onId)), onId);
    EXPECT_EQ(FakeChoice().convertToR(FakeChoice().convertFromR(offAndOn())), offAndOn());
    EXPECT_EQ(FakeRegion().convertToT(FakeRegion().convertFromT(QRect(1, 2, 3, 4))),
              QRect(1, 2, 3, 4));
    EXPECT_TRUE(FakeSwitch().convertToT(FakeSwitch().convertFromT(true)));
}

// ---- Typed signals: one for each untyped one, with the stored value.

TEST(TypedProperty, a_number_emits_its_stored_value_and_range_typed_and_once) {
    FakeDevice device;
    auto* const number = takenBy(device, new FakeNumber);
    QSignalSpy values(number, qOverload<int>(&FakeNumber::valueChanged));
    QSignalSpy ranges(number, qOverload<PMinMaxRange<int>>(&FakeNumber::rangeChanged));
    number->setValue(u"8"_qs); // stored as given, emitted as converted
    ASSERT_EQ(values.count(), 1);
    EXPECT_EQ(values.at(0).at(0), QVariant(8));
    EXPECT_EQ(ranges.count(), 0);
    number->rangeInDevice = {0, 99, 1};
    number->updateValueFromDevice();
    ASSERT_EQ(ranges.count(), 1);
    EXPECT_EQ(ranges.at(0).at(0), QVariant::fromValue(PMinMaxRange<int>{0, 99, 1}));
}

TEST(TypedProperty, a_switch_emits_its_stored_value_typed_and_once) {
    FakeDevice device;
    auto* const property = takenBy(device, new FakeSwitch);
    QSignalSpy values(property, qOverload<bool>(&FakeSwitch::valueChanged));
    property->setValue(true);
    ASSERT_EQ(values.count(), 1);
    EXPECT_EQ(values.at(0).at(0), QVariant(true));
}

TEST(TypedProperty, a_choice_emits_its_stored_value_and_range_typed_and_once) {
    FakeDevice device;
    auto* const choice = takenBy(device, new FakeChoice);
    QSignalSpy values(choice, qOverload<QUuid>(&FakeChoice::valueChanged));
    QSignalSpy ranges(choice, qOverload<PEnumeration>(&FakeChoice::rangeChanged));
    choice->setValue(QVariant::fromValue(onId));
    ASSERT_EQ(values.count(), 1);
    EXPECT_EQ(values.at(0).at(0), QVariant::fromValue(onId));
    choice->rangeInDevice = PEnumeration();
    choice->updateValueFromDevice();
    ASSERT_EQ(ranges.count(), 1);
    EXPECT_EQ(ranges.at(0).at(0), QVariant::fromValue(PEnumeration()));
}

TEST(TypedProperty, emits_the_devices_value_after_a_refusal) {
    FakeDevice device;
    auto* const number = takenBy(device, new FakeNumber(5));
    QSignalSpy values(number, qOverload<int>(&FakeNumber::valueChanged));
    number->answer = false;
    number->setValue(8);
    ASSERT_EQ(values.count(), 1);
    EXPECT_EQ(values.at(0).at(0), QVariant(5));
}

// ---- Actions.

TEST(ActionProperty, runs_once_whatever_the_argument_and_returns_its_result) {
    FakeAction action;
    EXPECT_TRUE(action.trySetValue(QVariant()));
    EXPECT_TRUE(action.trySetValue(u"anything"_qs));
    action.answer = false;
    EXPECT_FALSE(action.trySetValue(3));
    EXPECT_EQ(action.runs, 3);
}

TEST(ActionProperty, has_neither_value_nor_range) {
    FakeAction action;
    EXPECT_FALSE(action.tryGetValue().isValid());
    EXPECT_FALSE(action.tryGetRange().isValid());
    EXPECT_EQ(action.runs, 0);
}

TEST(ActionProperty, writing_succeeds_and_writes_nothing) {
    const FakeAction action;
    PJsonWriter writer;
    EXPECT_TRUE(action.writeValueToStream(&writer));
    EXPECT_EQ(writer.document(), PJsonWriter().document());
}

TEST(ActionProperty, saving_succeeds_and_leaves_no_object_behind) {
    FakeAction action;
    PJsonWriter writer;
    EXPECT_TRUE(action.writeStreamThis(&writer, u"fake"_qs));
    EXPECT_EQ(writer.document(), PJsonWriter().document());
}

TEST(ActionProperty, reading_reports_false_and_runs_nothing) {
    FakeAction action;
    PJsonReader reader;
    ASSERT_TRUE(reader.setDocument(R"({"value": 1})").isOk());
    EXPECT_FALSE(action.readValueFromStream(&reader, u"value"_qs));
    EXPECT_EQ(action.runs, 0);
}

// ---- Regions in files.

TEST(RegionProperty, is_read_as_what_the_device_made_of_it) {
    FakeDevice device;
    auto* const region = takenBy(device, new FakeRegion);
    region->answer = false; // it took nothing, and returns that
    PJsonReader reader;
    ASSERT_TRUE(reader.setDocument(R"({"value": {"$rect": [0, 0, 64, 48]}})").isOk());
    EXPECT_FALSE(region->readValueFromStream(&reader, u"value"_qs));
    EXPECT_EQ(region->valueInner(), QVariant(QRect(0, 0, 640, 480)));
    region->answer = true;
    EXPECT_TRUE(region->readValueFromStream(&reader, u"value"_qs));
    EXPECT_EQ(region->valueInner(), QVariant(QRect(0, 0, 64, 48)));
}

TEST(RegionProperty, an_empty_region_is_not_written) {
    FakeDevice device;
    auto* const region = takenBy(device, new FakeRegion(QRect()));
    PJsonWriter writer;
    EXPECT_TRUE(region->writeValueToStream(&writer));
    EXPECT_TRUE(region->writeStreamThis(&writer, u"fake"_qs));
    EXPECT_EQ(writer.document(), PJsonWriter().document());
}
