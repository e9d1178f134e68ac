// SPDX-License-Identifier: MIT
// Choices that are integers in the SDK.
#include <PTDevice/SimFixture.h>

#include <PCdPlugins/PTDevice/PTPropProcessMode.h>

#include <support/QtPrinters.h>

#include <gmock/gmock.h>

using testing::ElementsAre;

namespace {

QUuid idWithLastByte(int last) {
    return QUuid(u"{00000000-0000-0000-0000-0000000000%1}"_qs.arg(last, 2, 16, QChar(u'0')));
}

class PTPropProcessModes : public SimFixture {
protected:
    PTPropProcessModes() {
        loadScene({SimCameraText()});
        device = open();
        device->supportProperties();
        SimJournal::clear();
    }

    PDeviceProperty* property(const char* id) const { return findProperty(*device, id); }
    PEnumerationItem itemWithId(const char* id, const QVariant& value) const {
        return property(id)->rangeInner().value<PEnumeration>().getItem(value.toUuid());
    }

    std::unique_ptr<PTDevice> device;
};

QList<PEnumerationItem> listItems(const PDeviceProperty* property) {
    return property->rangeInner().value<PEnumeration>().items();
}

/// Items in the order in which they are created: the k-th has k in the last byte of its id.
struct ItemRow {
    const char* name;
    const char* title;
    const char* data;
};

void expectItems(const PDeviceProperty* property, const std::vector<ItemRow>& rows) {
    const QList<PEnumerationItem> items = listItems(property);
    ASSERT_EQ(items.size(), qsizetype(rows.size())) << property->id().toStdString();
    for (std::size_t k = 0; k < rows.size(); ++k) {
        const PEnumerationItem& item = items.at(qsizetype(k));
        EXPECT_EQ(item.id, idWithLastByte(int(k))) << rows[k].title;
        EXPECT_EQ(item.name, QString::fromUtf8(rows[k].name));
        EXPECT_EQ(item.title, QString::fromUtf8(rows[k].title));
        EXPECT_EQ(item.data, rows[k].data) << rows[k].title;
    }
}

} // namespace

TEST_F(PTPropProcessModes, offer_their_items_in_order_with_id_name_title_and_data) {
    const std::vector<ItemRow> offOn{{"Disable", "Disable", "0"}, {"Enable", "Enable", "1"}};
    expectItems(property("colormatrix"), offOn);
    expectItems(property("wbgain"), offOn);
    expectItems(property("binning"), {{"No binning", "No binning", "1"},
                                      {"Add 2x2", "Add 2x2", "2"},
                                      {"Add 3x3", "Add 3x3", "3"},
                                      {"Add 4x4", "Add 4x4", "4"},
                                      {"Average 2x2", "Average 2x2", "130"},
                                      {"Average 3x3", "Average 3x3", "131"},
                                      {"Average 4x4", "Average 4x4", "132"}});
    // Named by the bare number.
    expectItems(
        property("rotate"),
        {{"0", "0°", "0"}, {"90", "90°", "90"}, {"180", "180°", "180"}, {"270", "270°", "270"}});
}

TEST_F(PTPropProcessModes, have_the_null_id_as_that_of_the_first_item) {
    EXPECT_TRUE(idWithLastByte(0).isNull());
}

struct OptionRow {
    const char* name;
    const char* id;
    unsigned option;
};

class PTPropProcessModeOption : public PTPropProcessModes, public WithRow<OptionRow> {};

ROW_TEST(PTPropProcessModeOption, is_written_and_read) {
    property(GetParam().id)->trySetValue(QVariant::fromValue(idWithLastByte(1)));
    property(GetParam().id)->tryGetValue();
    const std::string start = "Toupcam_put_Option(h1, " + std::to_string(GetParam().option) + ", ";
    const std::string read = "Toupcam_get_Option(h1, " + std::to_string(GetParam().option) + ", ";
    EXPECT_THAT(SimJournal::lines(),
                ElementsAre(testing::StartsWith(start), testing::StartsWith(read)));
}

ROWS(Rows, PTPropProcessModeOption, OptionRow{"of_the_colour_matrix", "colormatrix", 13},
     OptionRow{"of_the_white_balance_gain", "wbgain", 14},
     OptionRow{"of_the_binning", "binning", 23}, OptionRow{"of_the_rotation", "rotate", 24});

TEST_F(PTPropProcessModes, binning_to_the_fifth_item_sends_130) {
    property("binning")->trySetValue(QVariant::fromValue(idWithLastByte(4)));
    EXPECT_THAT(SimJournal::lines(), ElementsAre("Toupcam_put_Option(h1, 23, 130) = 0"));
}

TEST_F(PTPropProcessModes, an_unknown_item_sends_zero) {
    property("colormatrix")->trySetValue(QVariant::fromValue(idWithLastByte(99)));
    EXPECT_THAT(SimJournal::lines(), ElementsAre("Toupcam_put_Option(h1, 13, 0) = 0"));
}

TEST_F(PTPropProcessModes, setting_is_always_true_whatever_the_sdk_returns) {
    EXPECT_TRUE(property("binning")->trySetValue(QVariant::fromValue(idWithLastByte(99))));
    EXPECT_THAT(SimJournal::lines(), ElementsAre("Toupcam_put_Option(h1, 23, 0) = -2147024809"));
}

TEST_F(PTPropProcessModes, the_range_that_the_host_holds_decides_the_value_sent) {
    // Not added to a device, so the host has cached no range and every item is unknown.
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

TEST_F(PTPropProcessModes, a_rotation_of_45_reads_as_the_null_id) {
    ASSERT_EQ(Toupcam_put_Option(device->sdkHandle(), TOUPCAM_OPTION_ROTATE, 90), 0);
    ToupcamSim_answerOption(TOUPCAM_OPTION_ROTATE, 45);
    EXPECT_EQ(property("rotate")->tryGetValue(), QVariant::fromValue(QUuid()));
    EXPECT_THAT(SimJournal::calls("Toupcam_get_Option"),
                ElementsAre("Toupcam_get_Option(h1, 24, 45) = 0"));
}

TEST_F(PTPropProcessModes, a_binning_of_0_reads_as_no_binning) {
    ASSERT_EQ(Toupcam_put_Option(device->sdkHandle(), TOUPCAM_OPTION_BINNING, 2), 0);
    ToupcamSim_answerOption(TOUPCAM_OPTION_BINNING, 0);
    const QVariant value = property("binning")->tryGetValue();
    EXPECT_EQ(value, QVariant::fromValue(QUuid()));
    EXPECT_EQ(itemWithId("binning", value).title, u"No binning"_qs);
}

TEST_F(PTPropProcessModes, what_is_read_is_looked_up_in_its_own_items_whatever_the_host_holds) {
    ASSERT_EQ(Toupcam_put_Option(device->sdkHandle(), TOUPCAM_OPTION_ROTATE, 90), 0);
    // Not added to a device, so the host has cached no range.
    PTPropProcessMode fresh(device->sdkHandle(), "rotate", QString(), TOUPCAM_OPTION_ROTATE,
                            property("rotate")->rangeInner().value<PEnumeration>());
    EXPECT_EQ(fresh.tryGetValue(), QVariant::fromValue(idWithLastByte(1)));
}

namespace {

/// A choice without an item for the camera's value.
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

TEST_F(PTPropProcessModes, a_binning_that_cannot_be_read_is_zero_and_reads_as_no_binning) {
    ASSERT_EQ(Toupcam_put_Option(device->sdkHandle(), TOUPCAM_OPTION_BINNING, 2), 0);
    ToupcamSim_failCall("Toupcam_get_Option", 0, 1, E_FAIL); // leaves 0, which is not in the list
    const QVariant value = property("binning")->tryGetValue();
    EXPECT_EQ(value, QVariant::fromValue(QUuid()));
    EXPECT_EQ(itemWithId("binning", value).title, u"No binning"_qs);
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

// ---- The same with the light-frequency calls.

namespace {

PEnumeration frequencies() {
    PEnumeration items;
    items.addItem(idWithLastByte(0), u"60"_qs, u"60 Hz"_qs, "0");
    items.addItem(idWithLastByte(1), u"50"_qs, u"50 Hz"_qs, "1");
    items.addItem(idWithLastByte(2), u"bad"_qs, u"bad"_qs, "77");
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

TEST_F(PTPropProcessModes, light_frequency_is_a_choice_of_the_items_it_was_given) {
    PTPropBackligtComp light(device->sdkHandle(), "hz", u"Light"_qs, 7, frequencies());
    EXPECT_EQ(light.id(), "hz");
    EXPECT_EQ(light.title(), u"Light"_qs);
    EXPECT_EQ(light.type(), PCD::DevicePropertyType(10));
    EXPECT_EQ(light.tryGetRange(), QVariant::fromValue(frequencies()));
    EXPECT_THAT(SimJournal::lines(), testing::IsEmpty()) << "which costs no call";
}

TEST_F(PTPropProcessModes, a_light_frequency_is_looked_up_in_its_own_items_when_read) {
    ASSERT_EQ(Toupcam_put_HZ(device->sdkHandle(), 1), 0);
    PTPropBackligtComp light(device->sdkHandle(), "hz", QString(), 0, frequencies());
    EXPECT_EQ(light.tryGetValue(), QVariant::fromValue(idWithLastByte(1)))
        << "the host holds no range yet";
}

TEST_F(PTPropProcessModes, a_light_frequency_is_looked_up_in_the_hosts_range_when_set) {
    PTPropBackligtComp light(device->sdkHandle(), "hz", QString(), 0, frequencies());
    light.trySetValue(QVariant::fromValue(idWithLastByte(1))); // no range is cached
    EXPECT_THAT(SimJournal::lines(), ElementsAre("Toupcam_put_HZ(h1, 0) = 0"));
}

TEST_F(PTPropProcessModes, a_light_frequency_that_cannot_be_read_is_0) {
    PEnumeration items;
    items.addItem(idWithLastByte(0), u"50"_qs, u"50 Hz"_qs, "1");
    items.addItem(idWithLastByte(1), u"60"_qs, u"60 Hz"_qs, "0");
    PTPropBackligtComp light(device->sdkHandle(), "hz", QString(), 0, items);
    ToupcamSim_failCall("Toupcam_get_HZ", 0, 1, E_FAIL);
    EXPECT_EQ(light.tryGetValue(), QVariant::fromValue(idWithLastByte(1)));
}

TEST_F(PTPropProcessModes, a_light_frequency_that_no_item_has_reads_as_the_null_id) {
    PEnumeration items;
    items.addItem(idWithLastByte(3), u"50"_qs, u"50 Hz"_qs, "1");
    PTPropBackligtComp light(device->sdkHandle(), "hz", QString(), 0, items);
    EXPECT_EQ(light.tryGetValue(), QVariant::fromValue(QUuid()));
}

TEST_F(PTPropProcessModes, an_option_that_cannot_be_read_is_0) {
    PEnumeration items;
    items.addItem(idWithLastByte(0), u"on"_qs, u"on"_qs, "1");
    items.addItem(idWithLastByte(1), u"off"_qs, u"off"_qs, "0");
    PTPropProcessMode choice(device->sdkHandle(), "choice", QString(), TOUPCAM_OPTION_WBGAIN,
                             items);
    ToupcamSim_failCall("Toupcam_get_Option", 0, 1, E_FAIL);
    EXPECT_EQ(choice.tryGetValue(), QVariant::fromValue(idWithLastByte(1)));
}
