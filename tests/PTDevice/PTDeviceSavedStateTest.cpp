// SPDX-License-Identifier: MIT
// Saving and restoring the state of a device.
#include <PTDevice/SimFixture.h>

#include <PCdPlugins/PTDevice/ExtendedExposureData.h>
#include <PCdPlugins/PTDevice/FANDATA.h>
#include <PCdPlugins/PTDevice/TECDATA.h>

#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/value/PPropertyEncoding.h>

#include <PCore/state/PJsonReader.h>
#include <PCore/state/PJsonWriter.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

namespace {

const QString cameraName = u"camera"_qs;

class PTDeviceSavedState : public SimFixture {
protected:
    PTDeviceSavedState() {
        loadScene({SimCameraText().withFlags(R"(["TEC_ONOFF", "FAN", "TRIGGER_SOFTWARE"])")});
        device = open();
        device->supportProperties();
    }
    QByteArray saved() const {
        PJsonWriter writer;
        EXPECT_TRUE(device->writeStreamThis(&writer, cameraName));
        return writer.document();
    }
    bool restore(const QByteArray& document) const {
        PJsonReader reader;
        const PStatus read = reader.setDocument(document);
        EXPECT_TRUE(read.isOk()) << read.reason().toStdString();
        return reader.beginObject(cameraName) && device->readStreamThis(&reader);
    }

    std::unique_ptr<PTDevice> device;
};

TEST_F(PTDeviceSavedState, holds_no_action_and_comes_back_whole) {
    device->getProperty("contrast")->setValue(12);
    const QByteArray document = saved();
    EXPECT_FALSE(document.contains("awbonce")) << document.toStdString();
    device->getProperty("contrast")->setValue(0);
    EXPECT_TRUE(restore(document));
    EXPECT_EQ(device->getProperty("contrast")->tryGetValue(), QVariant(12));
}

TEST_F(PTDeviceSavedState, brings_the_fields_of_a_composite_back) {
    ExtendedExposureData byHand;
    byHand.autoexpenabled = false;
    byHand.exp = 30;
    byHand.gain = 250;
    device->getProperty("extexposure")->setValue(QVariant::fromValue(byHand));
    const QByteArray document = saved();
    device->getProperty("extexposure")->setValue(QVariant::fromValue(ExtendedExposureData()));
    ASSERT_EQ(device->getProperty("autoexpogain")->tryGetValue(), QVariant(120));
    EXPECT_TRUE(restore(document));
    EXPECT_EQ(device->getProperty("autoexpogain")->tryGetValue(), QVariant(250));
    EXPECT_EQ(device->getProperty("autoexpottime")->tryGetValue(), QVariant(30000));
    EXPECT_EQ(device->getProperty("autoexponeable")->tryGetValue(), QVariant(false));
}

/// A composite value as bytes, which older files have, of which one field is beyond its range.
struct BytesRow {
    const char* name;
    QVariant current;
    QByteArray hex;
};

class PTDeviceBytesBeyondRange : public RowTest<BytesRow> {};

ROW_TEST(PTDeviceBytesBeyondRange, are_refused_as_in_text) {
    const QByteArray bytes = QByteArray::fromHex(GetParam().hex);
    EXPECT_FALSE(PPropertyEncoding::fromForm(bytes, GetParam().current, {}).isValid());
}

ROWS(Rows, PTDeviceBytesBeyondRange,
     BytesRow{"seconds_by_the_million", QVariant::fromValue(ExtendedExposureData()),
              "0064783f9b9b9b0000050000000000000001000005000000000000000000000001"},
     BytesRow{"an_exposure_that_is_not_a_number", QVariant::fromValue(ExtendedExposureData()),
              "006400787ff8000000000000010000000000000005000000000000000000000001"},
     BytesRow{"no_frame_of_a_sequence", QVariant::fromValue(ExtendedExposureData()),
              "006400783ff0000000000000010000000000000005000000000000000000000000"},
     BytesRow{"a_fan_that_is_on_90_times", QVariant::fromValue(FANDATA()), "0000005a00000001"},
     BytesRow{"a_cooler_that_is_less_than_off", QVariant::fromValue(TECDATA()), "ffffffffff6a"});

TEST(PTDeviceBytes, within_the_ranges_are_read) {
    const QVariant current = QVariant::fromValue(ExtendedExposureData());
    const QByteArray bytes =
        QByteArray::fromHex("006400783ff8000000000000010000000000000005000000000000000000000001");
    const QVariant value = PPropertyEncoding::fromForm(bytes, current, {});
    ASSERT_TRUE(value.isValid());
    EXPECT_EQ(value.value<ExtendedExposureData>().exp, 1.5);
}

} // namespace
