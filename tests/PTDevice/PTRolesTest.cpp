// SPDX-License-Identifier: MIT
// The roles of the plugin's properties, which hosts without knowledge of the plugin use.
#include <PTDevice/SimFixture.h>

#include <PCdPlugins/PTDevice/PTRoles.h>

#include <PCd/device/PDeviceRoles.h>
#include <PCd/property/PPropertyRoles.h>
#include <PCd/property/value/PCompositeFields.h>

#include <support/QtPrinters.h>

#include <gmock/gmock.h>

using testing::IsEmpty;

namespace {

class PTRolesTest : public SimFixture {
protected:
    PTRolesTest() {
        loadScene({SimCameraText().withFlags(R"(["TEC_ONOFF", "FAN"])")});
        device = open();
        device->supportProperties();
    }

    std::unique_ptr<PTDevice> device;
};

/// The fields of a value that have roles; an empty name means the value itself.
QStringList partsWithRoles(const PRoleValue& value) {
    QStringList parts;
    for (const PRoleBinding& binding : value.bindings) {
        if (binding.method.isEmpty())
            parts.append(QString::fromLatin1(binding.field));
    }
    parts.sort();
    return parts;
}

QStringList fieldNames(const PRoleValue& value) {
    QStringList parts = PCompositeFields::names(value.value);
    parts.sort();
    return parts.isEmpty() ? QStringList{QString()} : parts;
}

} // namespace

TEST_F(PTRolesTest, are_those_of_every_setting_and_of_every_field) {
    for (const PDeviceProperty* const property : device->supportProperties()) {
        SCOPED_TRACE(property->id().toStdString());
        const PRoleValue value = PPropertyRoles::value(*property);
        if (property->type() == PCD::DevicePropertyType::Action)
            EXPECT_TRUE(value.bindings.isEmpty());
        else
            EXPECT_EQ(partsWithRoles(value), fieldNames(value));
    }
}

TEST_F(PTRolesTest, name_methods_that_exist) {
    const auto* const trigger = PDeviceRoles::methodProperty(*device, PRole::FireTrigger);
    ASSERT_EQ(trigger, findProperty(*device, "extexposure"));
    EXPECT_GE(trigger->metaObject()->indexOfMethod(
                  PPropertyRoles::method(*trigger, PRole::FireTrigger) + "(int)"),
              0);
    const auto* const cooler = PDeviceRoles::methodProperty(*device, PRole::SensorTemperature);
    ASSERT_EQ(cooler, findProperty(*device, "teccontrol"));
    EXPECT_GE(cooler->metaObject()->indexOfMethod(
                  PPropertyRoles::method(*cooler, PRole::SensorTemperature) + "()"),
              0);
}

TEST_F(PTRolesTest, have_the_same_units_in_plain_and_composite_settings) {
    findProperty(*device, "autoexponeable")->setValue(false);
    findProperty(*device, "autoexpottime")->setValue(12'500);
    findProperty(*device, "autoexpogain")->setValue(150);
    findProperty(*device, "extexposure")->updateValueFromDevice();
    const PDeviceRoles roles = PDeviceRoles::of(*device);
    for (const PRoleValue& time :
         {roles.find(PRole::ExposureTime), roles.findComposite(PRole::ExposureTime)})
        EXPECT_EQ(time.number(PRole::ExposureTime), 12.5);
    for (const PRoleValue& gain : {roles.find(PRole::Gain), roles.findComposite(PRole::Gain)})
        EXPECT_EQ(gain.number(PRole::Gain), 1.5);
    EXPECT_EQ(roles.number(PRole::TriggerTime), 5000);
    EXPECT_EQ(roles.number(PRole::CoolerTarget), 15);
}

TEST_F(PTRolesTest, make_no_call_to_the_camera) {
    const QList<PDeviceProperty*> properties = device->getSupportProperties();
    SimJournal::clear();
    PTRoles::declare(properties);
    EXPECT_THAT(SimJournal::lines(), IsEmpty());
    qDeleteAll(properties);
}
