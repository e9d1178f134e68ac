// SPDX-License-Identifier: MIT
#include <apps/common/system/PUsbBus.h>

#include <support/FolderTest.h>
#include <support/MadeSystem.h>
#include <support/QtPrinters.h>

namespace {

class PUsbBusTest : public FolderTest {
protected:
    QStringList possiblePorts() const {
        QStringList ports;
        for (const PUsbDevice& device : PUsbBus::possibleCameras(tree))
            ports.append(device.port);
        return ports;
    }

    MadeSystem made{path(QString())};
    const PSystemTree tree{path(QString())};
};

TEST_F(PUsbBusTest, a_device_is_read_with_its_link_and_its_file) {
    const QString node = made.addUsb({u"3-1.4"_qs, 12});
    const QList<PUsbDevice> devices = PUsbBus::devices(tree);
    ASSERT_EQ(devices.size(), 1); // neither an interface nor the computer's own port
    EXPECT_EQ(devices.first().port, u"3-1.4"_qs);
    EXPECT_EQ(devices.first().rootPort(), u"3-1"_qs);
    EXPECT_EQ(devices.first().node, node);
    EXPECT_TRUE(node.endsWith(u"/dev/bus/usb/003/012"_qs)) << node.toStdString();
    EXPECT_EQ(devices.first().id.toText(), u"1234:5678"_qs);
    EXPECT_EQ(devices.first().version, 2.0);
    EXPECT_EQ(devices.first().speed, 480);
    EXPECT_EQ(devices.first().title(), u"1234:5678 (Made-up camera), port 3-1.4"_qs);
    EXPECT_FALSE(devices.first().isHub);
    EXPECT_FALSE(devices.first().hasSuperSpeed);
}

TEST_F(PUsbBusTest, a_device_without_a_name_is_called_by_its_id) {
    MadeSystem::Usb device;
    device.name.clear();
    made.addUsb(device);
    ASSERT_EQ(PUsbBus::devices(tree).size(), 1);
    EXPECT_EQ(PUsbBus::devices(tree).first().title(), u"1234:5678, port 1-2"_qs);
}

TEST_F(PUsbBusTest, a_system_without_usb_has_no_devices) {
    EXPECT_TRUE(PUsbBus::devices(PSystemTree(path(u"nothing"_qs))).isEmpty());
}

TEST_F(PUsbBusTest, only_an_interface_of_the_vendors_own_that_is_free_can_be_a_camera) {
    MadeSystem::Usb device;
    device.port = u"1-1"_qs;
    made.addUsb(device);
    device.port = u"1-2"_qs;
    device.driver = u"usbfs"_qs; // a program uses it
    made.addUsb(device);
    device.port = u"1-3"_qs;
    device.driver = u"snd-made-up"_qs;
    made.addUsb(device);
    device.port = u"1-4"_qs;
    device.driver.clear();
    device.interfaceClass = u"03"_qs; // a keyboard
    made.addUsb(device);
    device.port = u"1-5"_qs;
    device.interfaceClass = u"ff"_qs;
    device.deviceClass = u"09"_qs; // a hub
    made.addUsb(device);
    EXPECT_EQ(possiblePorts(), (QStringList{u"1-1"_qs, u"1-2"_qs}));
    EXPECT_TRUE(PUsbBus::devices(tree).last().isHub);
}

TEST_F(PUsbBusTest, the_capabilities_show_a_device_for_usb_3) {
    MadeSystem::Usb device;
    device.capabilities = superSpeedCapabilities();
    made.addUsb(device);
    ASSERT_EQ(PUsbBus::devices(tree).size(), 1);
    EXPECT_TRUE(PUsbBus::devices(tree).first().hasSuperSpeed);
}

TEST_F(PUsbBusTest, other_and_damaged_capabilities_do_not) {
    MadeSystem::Usb device;
    device.capabilities = superSpeedCapabilities().left(12); // without the last one
    made.addUsb(device);
    device.port = u"1-3"_qs;
    device.capabilities = QByteArray::fromHex("0000030000"); // of no length
    made.addUsb(device);
    device.port = u"1-4"_qs;
    device.capabilities = QByteArray::fromHex("0510"); // cut off
    made.addUsb(device);
    ASSERT_EQ(PUsbBus::devices(tree).size(), 3);
    for (const PUsbDevice& read : PUsbBus::devices(tree))
        EXPECT_FALSE(read.hasSuperSpeed) << read.port.toStdString();
}

} // namespace
