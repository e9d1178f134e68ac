// SPDX-License-Identifier: MIT
#include <PCd/device/PDeviceRoles.h>

#include <PCd/FakeDevice.h>
#include <PCd/FakeProperty.h>
#include <PCd/RoleRecord.h>

#include <PCd/property/PPropertyRoles.h>

#include <support/QtPrinters.h>

#include <gtest/gtest.h>

namespace {

FakeProperty* withRoles(FakeProperty* property, const PRoleBindings& roles) {
    PPropertyRoles::declare(*property, roles);
    return property;
}

/// A device with a composite value, then a plain exposure time, and a value without a role.
class DeviceRoles : public testing::Test {
protected:
    DeviceRoles() {
        device.makeProperties = [this] {
            return QList<PDeviceProperty*>{record, new FakeProperty("autoexpogain", 150), time};
        };
        device.supportProperties();
        EXPECT_TRUE(device.link().isOk());
        EXPECT_TRUE(device.startStream().isOk());
    }
    /// The settings stamped on the next frame.
    PDeviceSettings settingsOfNextFrame() {
        PImage image;
        EXPECT_TRUE(image.create(2, 2, PDIP::ColorFormat::Gray));
        device.processFrameImage(image);
        const PDeviceFrame frame = device.newestFrame();
        return frame.stamp == nullptr ? PDeviceSettings() : *frame.stamp->settings;
    }

    FakeDevice device;
    FakeProperty* const record = // the device's
        withRoles(new FakeProperty("all", RoleRecord::value()), RoleRecord::roles());
    FakeProperty* const time =
        withRoles(new FakeProperty("shutter", 20), {{PRole::ExposureTime, PRoleUnit::Seconds}});
};

TEST_F(DeviceRoles, find_a_property_plain_before_composite) {
    EXPECT_EQ(PDeviceRoles::property(device, PRole::ExposureTime), time);
    EXPECT_EQ(PDeviceRoles::plainProperty(device, PRole::ExposureTime), time);
    EXPECT_EQ(PDeviceRoles::compositeProperty(device, PRole::ExposureTime), record);
    EXPECT_EQ(PDeviceRoles::property(device, PRole::Triggered), record);
    EXPECT_EQ(PDeviceRoles::plainProperty(device, PRole::Triggered), nullptr);
    EXPECT_EQ(PDeviceRoles::methodProperty(device, PRole::FireTrigger), record);
    EXPECT_EQ(PDeviceRoles::property(device, PRole::FireTrigger), nullptr);
}

TEST_F(DeviceRoles, guess_nothing_about_a_property_that_declares_none) {
    EXPECT_EQ(PDeviceRoles::plainProperty(device, PRole::Gain), nullptr);
    EXPECT_EQ(PDeviceRoles::of(device).number(PRole::Gain), std::nullopt);
}

TEST_F(DeviceRoles, read_the_plain_value_before_the_composite_one) {
    const PDeviceRoles roles = PDeviceRoles::of(device);
    EXPECT_EQ(roles.number(PRole::ExposureTime), 20'000);
    EXPECT_EQ(roles.findComposite(PRole::ExposureTime).number(PRole::ExposureTime), 250);
    EXPECT_EQ(roles.find(PRole::TriggerTime).id, QByteArray("all"));
    EXPECT_TRUE(roles.isOn(PRole::Triggered));
    EXPECT_EQ(roles.part(PRole::Region), QVariant());
    EXPECT_TRUE(roles.findComposite(PRole::Region).bindings.isEmpty());
}

TEST_F(DeviceRoles, do_not_read_the_device) {
    record->calls.clear();
    time->calls.clear();
    PDeviceRoles::of(device);
    EXPECT_EQ(record->calls + time->calls, QStringList());
}

TEST_F(DeviceRoles, of_a_frame_are_those_of_its_settings) {
    const PDeviceSettings settings = settingsOfNextFrame();
    time->inDevice = 40;
    time->updateValueFromDevice();
    EXPECT_EQ(PDeviceRoles::of(settings).number(PRole::ExposureTime), 20'000);
    EXPECT_EQ(PDeviceRoles::of(settings).number(PRole::TriggerTime), 2000.5);
    EXPECT_EQ(PDeviceRoles::of(settingsOfNextFrame()).number(PRole::ExposureTime), 40'000);
    EXPECT_EQ(PDeviceRoles::of(PDeviceSettings()).number(PRole::ExposureTime), std::nullopt);
}

TEST_F(DeviceRoles, of_a_frame_stand_beside_the_settings_without_one) {
    const QList<PRoleValue> values = PDeviceRoles::toValues(settingsOfNextFrame());
    ASSERT_EQ(values.size(), 3);
    EXPECT_EQ(values[1].id, QByteArray("autoexpogain"));
    EXPECT_EQ(values[1].value, 150);
    EXPECT_TRUE(values[1].bindings.isEmpty());
    EXPECT_EQ(values[2].number(PRole::ExposureTime), 20'000);
}

TEST(DeviceRolesWithoutList, are_none_and_build_no_list) {
    FakeDevice device;
    EXPECT_EQ(PDeviceRoles::property(device, PRole::Gain), nullptr);
    EXPECT_EQ(PDeviceRoles::of(device).number(PRole::Gain), std::nullopt);
    EXPECT_EQ(device.calls, QStringList());
}

} // namespace
