// SPDX-License-Identifier: MIT
// Choices that the SDK holds as integers.
#include "SimFixture.h"

#include <PCdPlugins/PTDevice/PTPropProcessMode.h>

#include <support/QtPrinters.h>

#include <gmock/gmock.h>

using testing::ElementsAre;

namespace {

QUuid idWithLastByte(int last) {
    return QUuid(QStringLiteral("{00000000-0000-0000-0000-0000000000%1}")
                     .arg(last, 2, 16, QLatin1Char('0')));
}

class PTPropProcessModes : public SimFixture {
protected:
    PTPropProcessModes() {
        loadScene({SimCameraText()});
        device = open();
        device->supportProperties();
        SimJournal::clear();
    }

    PDeviceProperty* property(const char* id) const { return device->getProperty(id); }

    std::unique_ptr<PTDevice> device;
};

using Items = QList<std::pair<QString, QByteArray>>;

Items itemsOf(const PDeviceProperty* property) {
    Items items;
    const auto range = property->rangeInner().value<PEnumeration>();
    for (const PEnumerationItem& item : range.items())
        items.append({item.title, item.data});
    return items;
}

} // namespace

TEST_F(PTPropProcessModes, offer_their_items_in_order) {
    const Items offOn{{QStringLiteral("Disable"), "0"}, {QStringLiteral("Enable"), "1"}};
    EXPECT_EQ(itemsOf(property("colormatrix")), offOn);
    EXPECT_EQ(itemsOf(property("wbgain")), offOn);
    EXPECT_EQ(itemsOf(property("binning")), (Items{{QStringLiteral("No binning"), "1"},
                                                   {QStringLiteral("Add 2x2"), "2"},
                                                   {QStringLiteral("Add 3x3"), "3"},
                                                   {QStringLiteral("Add 4x4"), "4"},
                                                   {QStringLiteral("Average 2x2"), "130"},
                                                   {QStringLiteral("Average 3x3"), "131"},
                                                   {QStringLiteral("Average 4x4"), "132"}}));
    EXPECT_EQ(itemsOf(property("rotate")), (Items{{QStringLiteral("0°"), "0"},
                                                  {QStringLiteral("90°"), "90"},
                                                  {QStringLiteral("180°"), "180"},
                                                  {QStringLiteral("270°"), "270"}}));
}

TEST_F(PTPropProcessModes, number_their_items_in_the_last_byte_of_the_id) {
    const PEnumeration items = property("binning")->rangeInner().value<PEnumeration>();
    for (int k = 0; k < 7; ++k)
        EXPECT_EQ(items.items().at(k).id, idWithLastByte(k));
    EXPECT_TRUE(items.items().first().id.isNull());
}

TEST_F(PTPropProcessModes, rotations_are_named_by_the_bare_number) {
    const PEnumeration items = property("rotate")->rangeInner().value<PEnumeration>();
    EXPECT_EQ(items.items().at(1).name, QStringLiteral("90"));
    EXPECT_EQ(items.items().at(1).title, QStringLiteral("90°"));
}

TEST_F(PTPropProcessModes, binning_to_the_fifth_item_sends_130) {
    property("binning")->trySetValue(QVariant::fromValue(idWithLastByte(4)));
    EXPECT_THAT(SimJournal::lines(), ElementsAre("Toupcam_put_Option(h1, 23, 130) = 0"));
}

TEST_F(PTPropProcessModes, an_unknown_item_sends_zero) {
    property("colormatrix")->trySetValue(QVariant::fromValue(idWithLastByte(99)));
    EXPECT_THAT(SimJournal::lines(), ElementsAre("Toupcam_put_Option(h1, 13, 0) = 0"));
}

TEST_F(PTPropProcessModes, setting_is_always_true_whatever_the_sdk_answers) {
    EXPECT_TRUE(property("binning")->trySetValue(QVariant::fromValue(idWithLastByte(99))));
    EXPECT_THAT(SimJournal::lines(), ElementsAre("Toupcam_put_Option(h1, 23, 0) = -2147024809"));
}

TEST_F(PTPropProcessModes, the_range_that_the_host_holds_decides_the_value_sent) {
    // Nothing has taken this one yet, so the host holds no range: every item is unknown.
    PTPropProcessMode fresh(device->sdkHandle(), "rotate", QString(), TOUPCAM_OPTION_ROTATE,
                            property("rotate")->rangeInner().value<PEnumeration>());
    fresh.trySetValue(QVariant::fromValue(idWithLastByte(1)));
    fresh.updateValueFromDevice();
    fresh.trySetValue(QVariant::fromValue(idWithLastByte(1)));
    EXPECT_THAT(
        SimJournal::calls("Toupcam_put_Option"),
        ElementsAre("Toupcam_put_Option(h1, 24, 0) = 0", "Toupcam_put_Option(h1, 24, 90) = 0"));
}

TEST_F(PTPropProcessModes, a_rotation_of_90_reads_as_its_item) {
    ASSERT_EQ(Toupcam_put_Option(device->sdkHandle(), TOUPCAM_OPTION_ROTATE, 90), 0);
    EXPECT_EQ(property("rotate")->tryGetValue(), QVariant::fromValue(idWithLastByte(1)));
}

// The frame-rate limit is an option that takes any number: it lends the camera's answer here.

TEST_F(PTPropProcessModes, a_rotation_of_45_reads_as_the_null_id) {
    ASSERT_EQ(Toupcam_put_Option(device->sdkHandle(), TOUPCAM_OPTION_FRAMERATE, 45), 0);
    PTPropProcessMode rotate(device->sdkHandle(), "rotate", QString(), TOUPCAM_OPTION_FRAMERATE,
                             property("rotate")->rangeInner().value<PEnumeration>());
    EXPECT_EQ(rotate.tryGetValue(), QVariant::fromValue(QUuid()));
}

TEST_F(PTPropProcessModes, a_binning_of_0_reads_as_no_binning) {
    ASSERT_EQ(Toupcam_put_Option(device->sdkHandle(), TOUPCAM_OPTION_FRAMERATE, 0), 0);
    const auto items = property("binning")->rangeInner().value<PEnumeration>();
    PTPropProcessMode binning(device->sdkHandle(), "binning", QString(), TOUPCAM_OPTION_FRAMERATE,
                              items);
    const QVariant value = binning.tryGetValue();
    EXPECT_EQ(value, QVariant::fromValue(QUuid()));
    EXPECT_EQ(items.getItem(value.toUuid()).title, QStringLiteral("No binning"));
}

namespace {

/// A choice without an item for what the camera has.
PEnumeration itemsWithout(const PEnumeration& items, const QByteArray& data) {
    PEnumeration rest;
    for (const PEnumerationItem& item : items.items()) {
        if (item.data != data)
            rest.addItem(item.id, item.name, item.title, item.data);
    }
    return rest;
}

} // namespace

TEST_F(PTPropProcessModes, a_value_that_no_item_has_reads_as_the_null_id) {
    ASSERT_EQ(Toupcam_put_Option(device->sdkHandle(), TOUPCAM_OPTION_ROTATE, 270), 0);
    PTPropProcessMode rotate(
        device->sdkHandle(), "rotate", QString(), TOUPCAM_OPTION_ROTATE,
        itemsWithout(property("rotate")->rangeInner().value<PEnumeration>(), "270"));
    EXPECT_EQ(rotate.tryGetValue(), QVariant::fromValue(QUuid()));
}

TEST_F(PTPropProcessModes,
       a_binning_that_the_camera_does_not_tell_is_zero_and_reads_as_no_binning) {
    ASSERT_EQ(Toupcam_put_Option(device->sdkHandle(), TOUPCAM_OPTION_BINNING, 2), 0);
    ToupcamSim_failCall("Toupcam_get_Option", 0, 1, E_FAIL); // leaves 0, which is not in the list
    const QVariant value = property("binning")->tryGetValue();
    EXPECT_EQ(value, QVariant::fromValue(QUuid()));
    const PEnumeration items = property("binning")->rangeInner().value<PEnumeration>();
    EXPECT_EQ(items.getItem(value.toUuid()).title, QStringLiteral("No binning"));
}

TEST_F(PTPropProcessModes, the_range_is_given_without_a_call) {
    property("binning")->tryGetRange();
    EXPECT_THAT(SimJournal::lines(), testing::IsEmpty());
}

TEST_F(PTPropProcessModes, an_empty_list_of_items_sends_zero) {
    PTPropProcessMode empty(device->sdkHandle(), "rotate", QString(), TOUPCAM_OPTION_ROTATE,
                            PEnumeration());
    empty.updateValueFromDevice();
    empty.trySetValue(QVariant::fromValue(idWithLastByte(2)));
    EXPECT_THAT(SimJournal::calls("Toupcam_put_Option"),
                ElementsAre("Toupcam_put_Option(h1, 24, 0) = 0"));
    EXPECT_EQ(PEnumeration().getItem(idWithLastByte(2)), PEnumerationItem());
}

// ---- The same over the light-frequency calls.

namespace {

PEnumeration frequencies() {
    PEnumeration items;
    items.addItem(idWithLastByte(0), QStringLiteral("60"), QStringLiteral("60 Hz"), "0");
    items.addItem(idWithLastByte(1), QStringLiteral("50"), QStringLiteral("50 Hz"), "1");
    items.addItem(idWithLastByte(2), QStringLiteral("bad"), QStringLiteral("bad"), "77");
    return items;
}

} // namespace

TEST_F(PTPropProcessModes, light_frequency_is_sent_and_read_by_its_own_calls) {
    PTPropBackligtComp light(device->sdkHandle(), "hz", QString(), 0, frequencies());
    light.updateValueFromDevice();
    SimJournal::clear();
    EXPECT_TRUE(light.trySetValue(QVariant::fromValue(idWithLastByte(1))));
    EXPECT_EQ(light.tryGetValue(), QVariant::fromValue(idWithLastByte(1)));
    EXPECT_THAT(SimJournal::lines(),
                ElementsAre("Toupcam_put_HZ(h1, 1) = 0", "Toupcam_get_HZ(h1, 1) = 0"));
}

TEST_F(PTPropProcessModes, light_frequency_is_taken_exactly_if_the_result_is_not_negative) {
    PTPropBackligtComp light(device->sdkHandle(), "hz", QString(), 0, frequencies());
    light.updateValueFromDevice();
    EXPECT_FALSE(light.trySetValue(QVariant::fromValue(idWithLastByte(2))));
    ToupcamSim_failCall("Toupcam_put_HZ", 0, 1, S_FALSE);
    EXPECT_TRUE(light.trySetValue(QVariant::fromValue(idWithLastByte(1))));
}
