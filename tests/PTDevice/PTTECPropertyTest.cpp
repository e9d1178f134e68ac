// SPDX-License-Identifier: MIT
// The sensor's cooler: what is sent, what is read, how it is serialised.
#include <PTDevice/ComparedFields.h>
#include <PTDevice/SimFixture.h>
#include <PTDevice/StreamBytes.h>

#include <PCdPlugins/PTDevice/PTTECProperty.h>

#include <support/QtPrinters.h>

#include <QMetaType>

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class PTECPropertyTest : public SimFixture {
protected:
    PTECPropertyTest() {
        loadScene({SimCameraText().withFlags(R"(["TEC_ONOFF"])")});
        device = open();
        device->supportProperties();
        SimJournal::clear();
    }

    PTECProperty* property() const { return findProperty<PTECProperty>(*device, "teccontrol"); }
    TECDATA stored() const { return property()->valueInner().value<TECDATA>(); }

    std::unique_ptr<PTDevice> device;
};

} // namespace

TEST_F(PTECPropertyTest, sends_the_switch_and_then_the_target) {
    property()->setValue(QVariant::fromValue(TECDATA{1, -50}));
    EXPECT_THAT(SimJournal::lines(), ElementsAre("Toupcam_put_Option(h1, 8, 1) = 0",
                                                 "Toupcam_put_Temperature(h1, -50) = 0"));
    EXPECT_EQ(stored(), (TECDATA{1, -50}));
}

TEST_F(PTECPropertyTest, a_refused_target_is_reported_and_the_old_one_stays) {
    EXPECT_FALSE(property()->trySetValueToDevice({1, 2000}));
    property()->setValue(QVariant::fromValue(TECDATA{1, 2000}));
    EXPECT_EQ(stored(), (TECDATA{1, 150})); // the camera has taken the switch
}

TEST_F(PTECPropertyTest, a_refused_switch_is_not_noticed) {
    ToupcamSim_failOption("Toupcam_put_Option", TOUPCAM_OPTION_TEC, 0, 1, E_FAIL);
    EXPECT_TRUE(property()->trySetValueToDevice({1, 100}));
    EXPECT_THAT(SimJournal::calls("Toupcam_put_Temperature"), testing::SizeIs(1));
}

TEST_F(PTECPropertyTest, positive_results_are_not_failures) {
    ToupcamSim_failCall("Toupcam_put_Temperature", 0, 1, S_FALSE);
    EXPECT_TRUE(property()->trySetValueToDevice({1, 100}));
    ToupcamSim_failCall("Toupcam_get_Temperature", 0, 1, S_FALSE);
    EXPECT_TRUE(property()->sensorTemperature().isValid());
}

TEST_F(PTECPropertyTest, the_switch_is_read_and_the_target_is_not) {
    property()->setValue(QVariant::fromValue(TECDATA{0, 120}));
    Toupcam_put_Option(device->sdkHandle(), TOUPCAM_OPTION_TEC, 1);
    Toupcam_put_Temperature(device->sdkHandle(), -200);
    SimJournal::clear();
    EXPECT_EQ(property()->tryGetValueFromDevice(), (TECDATA{1, 120}));
    EXPECT_THAT(SimJournal::lines(), ElementsAre("Toupcam_get_Option(h1, 8, 1) = 0"));
}

TEST_F(PTECPropertyTest, a_switch_that_cannot_be_read_stays_as_it_was) {
    property()->setValue(QVariant::fromValue(TECDATA{1, 120}));
    ToupcamSim_failOption("Toupcam_get_Option", TOUPCAM_OPTION_TEC, 0, 1, E_FAIL);
    EXPECT_EQ(property()->tryGetValueFromDevice(), (TECDATA{1, 120}));
}

TEST_F(PTECPropertyTest, starts_with_15_degrees) {
    EXPECT_EQ(stored(), (TECDATA{0, 150}));
}

TEST_F(PTECPropertyTest, a_value_of_another_type_is_off_at_15_degrees) {
    EXPECT_EQ(property()->convertToT(u"cold"_qs), (TECDATA{0, 150}));
    EXPECT_EQ(property()->convertToT(QVariant::fromValue(TECDATA{1, 2})), (TECDATA{1, 2}));
}

TEST_F(PTECPropertyTest, there_is_no_range) {
    EXPECT_FALSE(property()->tryGetRange().isValid());
    property()->trySetRange(5);
    EXPECT_FALSE(property()->rangeInner().isValid());
    EXPECT_THAT(SimJournal::lines(), IsEmpty());
}

TEST_F(PTECPropertyTest, the_type_of_the_value_is_registered_by_name) {
    EXPECT_EQ(QMetaType::fromName("TECDATA"), QMetaType::fromType<TECDATA>());
}

TEST(TECDATATest, is_another_one_if_either_field_differs) {
    EXPECT_EQ(TECDATA::staticMetaObject.propertyCount(), 2);
    EXPECT_THAT(fieldsNotCompared<TECDATA>(), IsEmpty());
    EXPECT_TRUE(TECDATA() == TECDATA());
    EXPECT_FALSE(TECDATA() != TECDATA());
}

TEST(TECDATATest, minus_5_degrees_are_4_and_2_bytes_and_read_back_as_they_were) {
    const QByteArray bytes = toBytes(TECDATA{1, -50});
    EXPECT_EQ(bytes.toHex(), QByteArray("00000001ffce"));
    bool whole = false;
    EXPECT_EQ(valueOfBytes(bytes, TECDATA(), &whole), (TECDATA{1, -50}));
    EXPECT_TRUE(whole);
}

TEST_F(PTECPropertyTest, the_sensors_temperature_is_read_from_the_camera_in_degrees) {
    const QVariant degrees = property()->sensorTemperature();
    EXPECT_THAT(SimJournal::calls("Toupcam_get_Temperature"), testing::SizeIs(1));
    short tenths = 0;
    ASSERT_EQ(Toupcam_get_Temperature(device->sdkHandle(), &tenths), 0);
    EXPECT_NEAR(degrees.toDouble(), tenths / 10.0, 0.2);
    EXPECT_GT(degrees.toDouble(), 10); // room temperature in degrees, not in tenths
    EXPECT_LT(degrees.toDouble(), 60);
}

TEST_F(PTECPropertyTest, a_temperature_that_cannot_be_read_is_none) {
    ToupcamSim_failCall("Toupcam_get_Temperature", 0, 1, E_FAIL);
    EXPECT_FALSE(property()->sensorTemperature().isValid());
}
