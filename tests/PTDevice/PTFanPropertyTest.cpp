// SPDX-License-Identifier: MIT
// The cooling fan: what is sent, what is read, how it is serialised.
#include <PTDevice/ComparedFields.h>
#include <PTDevice/SimFixture.h>
#include <PTDevice/StreamBytes.h>

#include <PCdPlugins/PTDevice/PTFanDevice.h>

#include <support/QtPrinters.h>

#include <QMetaType>

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class PTFanPropertyTest : public SimFixture {
protected:
    PTFanPropertyTest() {
        loadScene({SimCameraText().withFlags(R"(["FAN"])").set("fanLevels", "5")});
        device = open();
        device->supportProperties();
        SimJournal::clear();
    }

    PTFanProperty* property() const { return findProperty<PTFanProperty>(*device, "fan"); }
    FANDATA readAt(int speed) const {
        Toupcam_put_Option(device->sdkHandle(), TOUPCAM_OPTION_FAN, speed);
        return property()->tryGetValueFromDevice();
    }

    std::unique_ptr<PTDevice> device;
};

} // namespace

TEST_F(PTFanPropertyTest, speed_0_reads_as_off) {
    EXPECT_EQ(readAt(0), (FANDATA{0, 0}));
}

TEST_F(PTFanPropertyTest, speed_1_reads_as_on) {
    EXPECT_EQ(readAt(1), (FANDATA{1, 1}));
}

TEST_F(PTFanPropertyTest, speed_less_than_0_reads_as_off) {
    ToupcamSim_answerOption(TOUPCAM_OPTION_FAN, -1);
    EXPECT_EQ(property()->tryGetValueFromDevice(), (FANDATA{0, -1}));
}

TEST_F(PTFanPropertyTest, speed_3_reads_as_on_with_3) {
    EXPECT_EQ(readAt(3), (FANDATA{1, 3}));
}

TEST_F(PTFanPropertyTest, a_fan_that_cannot_be_read_is_neither_on_nor_off) {
    ToupcamSim_failOption("Toupcam_get_Option", TOUPCAM_OPTION_FAN, 0, 1, E_FAIL);
    EXPECT_EQ(property()->tryGetValueFromDevice(), (FANDATA{-1, 0}));
}

TEST_F(PTFanPropertyTest, on_sends_the_speed) {
    EXPECT_TRUE(property()->trySetValueToDevice({1, 4}));
    EXPECT_THAT(SimJournal::lines(), ElementsAre("Toupcam_put_Option(h1, 7, 4) = 0"));
    EXPECT_TRUE(log.contains(u"Set value to device: 1 4"_qs));
    EXPECT_TRUE(log.contains(u"Assign fan speed: 4"_qs));
}

TEST_F(PTFanPropertyTest, off_sends_0_and_ignores_the_speed) {
    property()->setValue(QVariant::fromValue(FANDATA{0, 5}));
    EXPECT_THAT(SimJournal::lines(), ElementsAre("Toupcam_put_Option(h1, 7, 0) = 0"));
    EXPECT_EQ(property()->valueInner(), QVariant::fromValue(FANDATA{0, 5}));
    EXPECT_FALSE(log.contains(u"Assign fan speed: 5"_qs));
}

TEST_F(PTFanPropertyTest, on_with_speed_0_sends_0_and_stays_on) {
    property()->setValue(QVariant::fromValue(FANDATA{1, 0}));
    EXPECT_THAT(SimJournal::lines(), ElementsAre("Toupcam_put_Option(h1, 7, 0) = 0"));
    EXPECT_EQ(property()->valueInner(), QVariant::fromValue(FANDATA{1, 0}));
}

TEST_F(PTFanPropertyTest, a_refused_speed_is_logged_and_kept_as_the_value) {
    property()->setValue(QVariant::fromValue(FANDATA{1, 99}));
    EXPECT_THAT(
        ptTexts(log),
        testing::Contains(
            u"Failed TOUPCAM_OP: Toupcam_put_Option(m_h, TOUPCAM_OPTION_FAN, d.target)"_qs));
    EXPECT_EQ(property()->valueInner(), QVariant::fromValue(FANDATA{1, 99}));
}

TEST_F(PTFanPropertyTest, a_refused_switching_off_is_logged_and_kept_as_the_value) {
    ToupcamSim_failCall("Toupcam_put_Option", 0, 1, E_FAIL);
    property()->setValue(QVariant::fromValue(FANDATA{0, 2}));
    EXPECT_THAT(
        ptTexts(log),
        testing::Contains(u"Failed TOUPCAM_OP: Toupcam_put_Option(m_h, TOUPCAM_OPTION_FAN, 0)"_qs));
    EXPECT_EQ(property()->valueInner(), QVariant::fromValue(FANDATA{0, 2}));
}

TEST_F(PTFanPropertyTest, positive_results_are_not_failures) {
    ToupcamSim_failOption("Toupcam_put_Option", TOUPCAM_OPTION_FAN, 0, 2, S_FALSE);
    EXPECT_TRUE(property()->trySetValueToDevice({1, 4}));
    EXPECT_TRUE(property()->trySetValueToDevice({0, 4}));
    EXPECT_TRUE(ptTexts(log).isEmpty());
    ToupcamSim_failOption("Toupcam_get_Option", TOUPCAM_OPTION_FAN, 0, 1, S_FALSE);
    EXPECT_EQ(property()->tryGetValueFromDevice(), (FANDATA{0, 0}));
}

TEST_F(PTFanPropertyTest, a_value_of_another_type_is_an_unknown_fan) {
    EXPECT_EQ(property()->convertToT(u"fast"_qs), (FANDATA{-1, 0}));
    EXPECT_EQ(property()->convertToT(QVariant::fromValue(FANDATA{1, 2})), (FANDATA{1, 2}));
}

TEST_F(PTFanPropertyTest, there_is_no_range) {
    EXPECT_FALSE(property()->tryGetRange().isValid());
    property()->trySetRange(5);
    EXPECT_FALSE(property()->rangeInner().isValid());
    EXPECT_THAT(SimJournal::lines(), IsEmpty());
}

TEST_F(PTFanPropertyTest, the_type_of_the_value_is_registered_by_name) {
    EXPECT_EQ(QMetaType::fromName("FANDATA"), QMetaType::fromType<FANDATA>());
}

TEST(FANDATATest, is_another_one_if_either_field_differs) {
    EXPECT_EQ(FANDATA::staticMetaObject.propertyCount(), 2);
    EXPECT_THAT(fieldsNotCompared<FANDATA>(), IsEmpty());
    EXPECT_TRUE(FANDATA() == FANDATA());
    EXPECT_FALSE(FANDATA() != FANDATA());
}

TEST(FANDATATest, is_8_bytes_and_read_back_as_it_was) {
    const QByteArray bytes = toBytes(FANDATA{-1, 0x01020304});
    EXPECT_EQ(bytes.toHex(), QByteArray("ffffffff01020304"));
    bool whole = false;
    EXPECT_EQ(valueOfBytes(bytes, FANDATA(), &whole), (FANDATA{-1, 0x01020304}));
    EXPECT_TRUE(whole);
}
