// SPDX-License-Identifier: MIT
// Saving and restoring a device.
#include <PCd/FakeDevice.h>
#include <PCd/FakeProperty.h>
#include <PCd/property/typed/TypedFakes.h>

#include <PCore/state/PJsonReader.h>
#include <PCore/state/PJsonWriter.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace {

const QString cameraName = u"camera"_qs;

/// A device with gain and hue, whose values can be changed.
class SavedDevice {
public:
    SavedDevice()
        : gain(new FakeProperty("gain", 1))
        , hue(new FakeProperty("hue", 2)) {
        device.makeProperties = [this] { return QList<PDeviceProperty*>{gain, hue}; };
    }

    QByteArray saved() {
        PJsonWriter writer;
        EXPECT_TRUE(device.writeStreamThis(&writer, cameraName));
        return writer.document();
    }
    bool restore(const QByteArray& document) {
        PJsonReader reader;
        const PStatus read = reader.setDocument(document);
        EXPECT_TRUE(read.isOk()) << read.reason().toStdString();
        EXPECT_TRUE(reader.beginObject(cameraName));
        return device.readStreamThis(&reader);
    }

    FakeDevice device;
    FakeProperty* gain; // both owned by the device
    FakeProperty* hue;
};

QByteArray savedWith(const char* mode, const char* properties) {
    return QByteArray("{\"camera\": {") + mode + "\"properties\": {" + properties + "}}}";
}

} // namespace

TEST(PDeviceSerialization, a_device_that_does_not_report_a_value_or_its_mode_is_not_saved) {
    SavedDevice saved;
    saved.device.supportProperties();
    saved.device.failsToReadMode = true;
    PJsonWriter modeMissing;
    EXPECT_FALSE(saved.device.writeStreamThis(&modeMissing, cameraName));
    saved.device.failsToReadMode = false;
    saved.hue->failsToRead = true;
    saved.hue->setValue(3);
    PJsonWriter hueMissing;
    EXPECT_FALSE(saved.device.writeStreamThis(&hueMissing, cameraName));
}

TEST(PDeviceSerialization, saves_model_serial_mode_and_every_property) {
    SavedDevice camera;
    const QJsonObject saved =
        QJsonDocument::fromJson(camera.saved()).object().value(cameraName).toObject();
    const QJsonDocument expected = QJsonDocument::fromJson(
        R"({"model": "Fake", "serial": "1", "mode": "0",
            "properties": {"gain": {"value": 1}, "hue": {"value": 2}}})");
    EXPECT_EQ(QJsonDocument(saved).toJson(), expected.toJson());
}

TEST(PDeviceSerialization, brings_mode_and_properties_back) {
    SavedDevice before;
    before.device.setMode(before.device.modes.at(1));
    before.gain->inDevice = 50;
    before.hue->inDevice = 60;
    SavedDevice after;
    EXPECT_TRUE(after.restore(before.saved()));
    EXPECT_EQ(after.device.mode, after.device.modes.at(1));
    EXPECT_EQ(after.gain->inDevice, QVariant(50));
    EXPECT_EQ(after.hue->inDevice, QVariant(60));
    EXPECT_EQ(after.hue->valueInner(), QVariant(60));
}

TEST(PDeviceSerialization, sets_the_mode_before_the_properties) {
    SavedDevice camera;
    QVariant gainAtMode;
    QObject::connect(&camera.device, &PDevice::modeChanged,
                     [&] { gainAtMode = camera.gain->inDevice; });
    EXPECT_TRUE(camera.restore(savedWith("\"mode\": \"1\",", "\"gain\": {\"value\": 9}")));
    EXPECT_EQ(gainAtMode, QVariant(1));
    EXPECT_EQ(camera.gain->inDevice, QVariant(9));
}

TEST(PDeviceSerialization, leaves_out_what_is_not_serialisable) {
    SavedDevice camera;
    camera.hue->setSerializable(false);
    EXPECT_FALSE(camera.saved().contains("hue"));
    EXPECT_TRUE(camera.saved().contains("gain"));
}

TEST(PDeviceSerialization, of_a_device_with_an_action_restores_and_does_not_run_it) {
    FakeAction* action = nullptr; // owned by the device
    SavedDevice camera;
    camera.device.makeProperties = [&] {
        action = new FakeAction;
        return QList<PDeviceProperty*>{camera.gain, camera.hue, action};
    };
    const QByteArray document = camera.saved();
    EXPECT_FALSE(document.contains("fake")) << document.toStdString();
    EXPECT_TRUE(camera.restore(document));
    ASSERT_NE(action, nullptr);
    EXPECT_EQ(action->runs, 0);
}

TEST(PDeviceSerialization,
     of_an_older_version_with_an_empty_object_for_an_action_restores_the_rest) {
    SavedDevice camera;
    auto* const action = new FakeAction;
    camera.device.makeProperties = [&] {
        return QList<PDeviceProperty*>{camera.gain, action, camera.hue};
    };
    EXPECT_TRUE(camera.restore(savedWith("", "\"fake\": {}, \"gain\": {\"value\": 9}")));
    EXPECT_EQ(camera.gain->inDevice, QVariant(9));
    EXPECT_EQ(action->runs, 0);
}

TEST(PDeviceSerialization, of_a_device_without_modes_saves_none_and_restores) {
    SavedDevice before;
    before.device.mode = {};
    const QByteArray document = before.saved();
    EXPECT_FALSE(document.contains("mode\""));
    SavedDevice after;
    EXPECT_TRUE(after.restore(document));
    EXPECT_EQ(after.device.mode, after.device.modes.at(0));
}

namespace {

struct RestoreRow {
    const char* name;
    bool refusesMode;
    const char* mode;
    const char* gain;
};

class FailedRestore : public RowTest<RestoreRow> {};

ROW_TEST(FailedRestore, is_reported_and_restores_the_rest) {
    SavedDevice camera;
    camera.device.refusesMode = GetParam().refusesMode;
    camera.gain->refuses = true;
    EXPECT_FALSE(camera.restore(
        savedWith(GetParam().mode, GetParam().gain + QByteArray("\"hue\": {\"value\": 77}"))));
    EXPECT_EQ(camera.device.mode, camera.device.modes.at(0));
    EXPECT_EQ(camera.gain->inDevice, QVariant(1));
    EXPECT_EQ(camera.hue->inDevice, QVariant(77));
}

} // namespace

ROWS(Rows, FailedRestore,
     RestoreRow{"of_a_property_that_is_refused", false, "", "\"gain\": {\"value\": 9},"},
     RestoreRow{"of_a_property_without_a_value", false, "", "\"gain\": {},"},
     RestoreRow{"of_a_property_that_the_device_does_not_have", false, "",
                "\"fan\": {\"value\": 9},"},
     RestoreRow{"of_a_mode_that_the_device_does_not_have", false, "\"mode\": \"7\",", ""},
     RestoreRow{"of_a_mode_that_is_refused", true, "\"mode\": \"1\",", ""});

TEST(PDeviceSerialization, says_that_there_are_no_properties_to_restore) {
    SavedDevice camera;
    EXPECT_FALSE(camera.restore("{\"camera\": {}}"));
    EXPECT_EQ(camera.gain->inDevice, QVariant(1));
}
