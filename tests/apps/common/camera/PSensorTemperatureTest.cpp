// SPDX-License-Identifier: MIT
#include <apps/common/camera/PSensorTemperature.h>

#include <PCd/FakeDevice.h>
#include <PCd/FakeProperty.h>

#include <PCd/property/PPropertyRoles.h>

#include <gtest/gtest.h>

namespace {

class SensorTemperature : public testing::Test {
protected:
    SensorTemperature() {
        PPropertyRoles::declare(*property, {{PRole::SensorTemperature, PRoleUnit::TenthsOfDegree}});
        device.makeProperties = [this] { return QList<PDeviceProperty*>{property}; };
        device.supportProperties();
    }

    FakeDevice device;
    FakeProperty* const property = new FakeProperty("temperature", 125); // the device's
};

TEST_F(SensorTemperature, is_read_from_the_camera) {
    EXPECT_EQ(PSensorTemperature::of(device), 12.5);
    property->inDevice = 130;
    EXPECT_EQ(PSensorTemperature::of(device), 13.0);
}

TEST_F(SensorTemperature, is_unknown_while_it_cannot_be_read) {
    property->failsToRead = true;
    EXPECT_EQ(PSensorTemperature::of(device), std::nullopt);
    property->failsToRead = false;
    EXPECT_EQ(PSensorTemperature::of(device), 12.5);
}

TEST_F(SensorTemperature, is_unknown_without_a_setting_for_it) {
    FakeDevice other;
    other.supportProperties();
    EXPECT_EQ(PSensorTemperature::of(other), std::nullopt);
}

} // namespace
