// SPDX-License-Identifier: MIT
// Saving and restoring the state of a device.
#include <PTDevice/SimFixture.h>

#include <PCdPlugins/PTDevice/ExtendedExposureData.h>

#include <PCd/property/PDeviceProperty.h>

#include <PCore/state/PJsonReader.h>
#include <PCore/state/PJsonWriter.h>

#include <support/QtPrinters.h>

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

} // namespace
