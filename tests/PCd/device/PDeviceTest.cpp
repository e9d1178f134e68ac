// SPDX-License-Identifier: MIT
#include <PCd/FakeDevice.h>
#include <PCd/FakeProperty.h>
#include <PCd/FakeRegister.h>
#include <PCd/frame/FrameHelpers.h>

#include <PDip/PBufferPool.h>

#include <support/QtPrinters.h>

#include <QPointer>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace {

QString text(const char* latin1) {
    return QString::fromLatin1(latin1);
}

} // namespace

// ---- States.

TEST(PDevice, is_neither_linked_nor_streaming_nor_gone_at_first) {
    const FakeDevice device;
    EXPECT_FALSE(device.isLinked());
    EXPECT_FALSE(device.isStreaming());
    EXPECT_FALSE(device.isInitialized());
    EXPECT_FALSE(device.isGone());
}

TEST(PDevice, is_linked_once_however_often_link_is_called) {
    FakeDevice device;
    EXPECT_TRUE(device.link().isOk());
    EXPECT_TRUE(device.link().isOk());
    EXPECT_TRUE(device.isLinked());
    EXPECT_EQ(device.calls, calls({"link"}));
}

TEST(PDevice, says_that_the_device_refused_to_be_linked) {
    FakeDevice device;
    device.refusesLink = true;
    EXPECT_EQ(device.link().reason(), text("the device refused to be linked"));
    EXPECT_FALSE(device.isLinked());
}

TEST(PDevice, does_not_start_its_stream_before_it_is_linked) {
    FakeDevice device;
    EXPECT_EQ(device.startStream().reason(), text("the device is not linked"));
    EXPECT_FALSE(device.isStreaming());
    EXPECT_EQ(device.calls, QStringList());
}

TEST(PDevice, does_not_start_a_stream_that_runs) {
    FakeDevice device;
    device.link();
    EXPECT_TRUE(device.startStream().isOk());
    EXPECT_EQ(device.startStream().reason(), text("the stream is already running"));
    EXPECT_TRUE(device.isStreaming());
    EXPECT_EQ(device.calls, calls({"link", "start"}));
}

TEST(PDevice, says_that_the_device_refused_to_start_its_stream) {
    FakeDevice device;
    device.link();
    device.refusesStart = true;
    EXPECT_EQ(device.startStream().reason(), text("the device refused to start its stream"));
    EXPECT_FALSE(device.isStreaming());
}

TEST(PDevice, has_nothing_to_stop_or_unlink_at_first) {
    FakeDevice device;
    EXPECT_TRUE(device.stopStream().isOk());
    EXPECT_TRUE(device.unlink().isOk());
    EXPECT_EQ(device.calls, QStringList());
}

TEST(PDevice, gives_the_memory_of_frames_back_as_soon_as_its_stream_ends) {
    FakeDevice device;
    ASSERT_TRUE(device.link().isOk());
    ASSERT_TRUE(device.startStream().isOk());
    smallImage(); // its memory is then kept for the next image
    ASSERT_GT(PBufferPool::instance().statistics().idleBytes, 0u);
    EXPECT_TRUE(device.stopStream().isOk());
    EXPECT_EQ(PBufferPool::instance().statistics().idleBytes, 0u);
}

TEST(PDevice, is_stopped_for_the_host_even_if_it_refused_to_stop) {
    FakeDevice device;
    device.link();
    device.startStream();
    device.refusesStop = true;
    EXPECT_EQ(device.stopStream().reason(), text("the device refused to stop its stream"));
    EXPECT_FALSE(device.isStreaming());
}

TEST(PDevice, is_stopped_again_before_each_start_until_it_no_longer_refuses) {
    FakeDevice device;
    device.link();
    device.startStream();
    device.refusesStop = true;
    device.refusesStart = true; // as it still streams
    device.stopStream();
    device.calls.clear();
    EXPECT_FALSE(device.startStream().isOk());
    device.refusesStop = false;
    device.refusesStart = false;
    EXPECT_TRUE(device.startStream().isOk());
    device.stopStream();
    EXPECT_TRUE(device.startStream().isOk());
    EXPECT_EQ(device.calls, calls({"stop", "start", "stop", "start", "stop", "start"}));
}

TEST(PDevice, stops_its_stream_before_it_is_unlinked) {
    FakeDevice device;
    device.link();
    device.startStream();
    QSignalSpy unlinked(&device, &PDevice::unlinked);
    EXPECT_TRUE(device.unlink().isOk());
    EXPECT_EQ(device.calls, calls({"link", "start", "stop", "unlink"}));
    EXPECT_FALSE(device.isLinked());
    ASSERT_EQ(unlinked.count(), 1);
    EXPECT_EQ(unlinked.first().first().toByteArray(), device.deviceId(false));
}

TEST(PDevice, is_unlinked_for_the_host_even_if_it_refused) {
    FakeDevice device;
    device.link();
    device.refusesUnlink = true;
    QSignalSpy unlinked(&device, &PDevice::unlinked);
    EXPECT_EQ(device.unlink().reason(), text("the device refused to be unlinked"));
    EXPECT_FALSE(device.isLinked());
    EXPECT_EQ(unlinked.count(), 1);
}

TEST(PDevice, that_is_gone_fails_everything_but_stopping) {
    auto* const device = new FakeDevice; // the register deletes it
    FakeRegister owner({device});
    owner.updateDevices();
    device->link();
    device->startStream();
    owner.removeDevice(device);
    EXPECT_TRUE(device->isGone());
    EXPECT_FALSE(device->isLinked());
    EXPECT_FALSE(device->isStreaming());
    EXPECT_EQ(device->link().reason(), text("the device is gone"));
    EXPECT_EQ(device->startStream().reason(), text("the device is gone"));
    EXPECT_EQ(device->setMode({}).reason(), text("the device is gone"));
    EXPECT_TRUE(device->stopStream().isOk());
    EXPECT_TRUE(device->unlink().isOk());
    EXPECT_EQ(device->calls, calls({"link", "start", "stop", "unlink"}));
}

// ---- Modes.

TEST(PDevice, emits_its_mode_after_one_was_set) {
    FakeDevice device;
    QSignalSpy changed(&device, &PDevice::modeChanged);
    EXPECT_TRUE(device.setMode(device.modes.at(1)).isOk());
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed.first().first().value<PDeviceMode>(), device.modes.at(1));
}

TEST(PDevice, names_the_mode_that_was_refused) {
    FakeDevice device;
    device.refusesMode = true;
    QSignalSpy changed(&device, &PDevice::modeChanged);
    EXPECT_EQ(device.setMode(device.modes.at(1)).reason(),
              text("the device refused the mode 320x240"));
    EXPECT_EQ(changed.count(), 0);
}

// ---- What a plugin need not declare.

TEST(PDevice, is_a_plain_real_camera_where_a_plugin_says_nothing) {
    FakeDevice device;
    EXPECT_FALSE(device.isSupportSoftwareTrigger());
    EXPECT_FALSE(device.isGigE());
    EXPECT_TRUE(device.isRealDevice());
    EXPECT_FALSE(device.isSequence());
    EXPECT_FALSE(device.isPhotoDevice());
    EXPECT_FALSE(device.isSupportStillCapture());
    EXPECT_FALSE(device.triggerStillCapture());
    EXPECT_TRUE(device.getSnapshot().isNull());
    EXPECT_TRUE(device.enableHistogram());
    EXPECT_FALSE(device.tryFireSoftwareTrigger());
    EXPECT_FALSE(device.tryPollForTriggerReady());
}

TEST(PDevice, lets_the_host_process_images_if_that_is_switched_on) {
    FakeDevice device;
    EXPECT_FALSE(device.canProcessImage());
    device.setProcessImage(true);
    EXPECT_TRUE(device.canProcessImage());
}

TEST(PDevice, keeps_options_apart) {
    FakeDevice device;
    device.setDeviceOption(PCD::DeviceOption::HotPluggable, true);
    device.setDeviceOption(PCD::DeviceOption::AsynchronousStill, true);
    device.setDeviceOption(PCD::DeviceOption::HotPluggable, false);
    EXPECT_FALSE(device.hasDeviceOption(PCD::DeviceOption::HotPluggable));
    EXPECT_TRUE(device.hasDeviceOption(PCD::DeviceOption::AsynchronousStill));
}

TEST(PDevice, shows_model_and_serial_without_padding_zeros) {
    const FakeDevice device(QByteArray("Fake\0\0", 6), QByteArray("AB\0\0\0\0\0\0\0\0", 10));
    EXPECT_EQ(device.model(), text("Fake"));
    EXPECT_EQ(device.serial(), text("AB"));
}

TEST(PDevice, is_the_same_camera_as_one_of_equal_model_and_serial) {
    const FakeDevice device("Fake", "1");
    EXPECT_TRUE(device.isEqualSessionInfo(&device));
    const FakeDevice same("Fake", QByteArray("1\0", 2));
    EXPECT_TRUE(device.isEqualSessionInfo(&same));
    const FakeDevice otherSerial("Fake", "2");
    EXPECT_FALSE(device.isEqualSessionInfo(&otherSerial));
    const FakeDevice otherModel("Other", "1");
    EXPECT_FALSE(device.isEqualSessionInfo(&otherModel));
    EXPECT_FALSE(device.isEqualSessionInfo(nullptr));
}

// ---- Properties and groups.

TEST(PDevice, creates_its_properties_once) {
    FakeDevice device;
    auto* const property = new FakeProperty("gain");
    device.makeProperties = [&] { return QList<PDeviceProperty*>{property}; };
    EXPECT_EQ(device.supportProperties(), QList<PDeviceProperty*>{property});
    EXPECT_EQ(device.supportProperties(), QList<PDeviceProperty*>{property});
    EXPECT_TRUE(device.isInitialized());
    EXPECT_EQ(device.calls, calls({"properties"}));
}

TEST(PDevice, reads_range_then_value_of_a_property_once_and_writes_nothing) {
    FakeDevice device;
    auto* const property = new FakeProperty("gain", 7);
    property->rangeInDevice = 100;
    property->setDefaultValue(3);
    device.makeProperties = [&] { return QList<PDeviceProperty*>{property}; };
    device.supportProperties();
    device.supportProperties();
    EXPECT_EQ(property->calls, calls({"get range", "get value"}));
    EXPECT_EQ(property->rangeInner(), QVariant(100));
    EXPECT_EQ(property->valueInner(), QVariant(7));
}

TEST(PDevice, owns_its_properties_and_groups) {
    QPointer<FakeProperty> property(new FakeProperty("gain"));
    QPointer<PDevicePropertyGroup> group(new PDevicePropertyGroup(text("g"), text("Group")));
    {
        FakeDevice device;
        EXPECT_EQ(property->device(), nullptr);
        device.makeProperties = [&] { return QList<PDeviceProperty*>{property}; };
        device.makeGroups = [&] { return QList<PDevicePropertyGroup*>{group}; };
        device.supportPropertyGroups();
        EXPECT_EQ(property->device(), &device);
    }
    EXPECT_TRUE(property.isNull());
    EXPECT_TRUE(group.isNull());
}

TEST(PDevice, has_no_empty_entries_among_its_properties_and_groups) {
    FakeDevice device;
    auto* const property = new FakeProperty("gain");
    auto* const group = new PDevicePropertyGroup(text("g"), text("Group"));
    device.makeProperties = [&] { return QList<PDeviceProperty*>{nullptr, property, nullptr}; };
    device.makeGroups = [&] { return QList<PDevicePropertyGroup*>{group, nullptr}; };
    EXPECT_EQ(device.supportPropertyGroups(), QList<PDevicePropertyGroup*>{group});
    EXPECT_EQ(device.supportProperties(), QList<PDeviceProperty*>{property});
    EXPECT_EQ(device.getProperty("gain"), property);
}

TEST(PDevice, finds_a_property_by_its_id) {
    FakeDevice device;
    auto* const gain = new FakeProperty("gain");
    auto* const hue = new FakeProperty("hue");
    device.makeProperties = [&] { return QList<PDeviceProperty*>{gain, hue}; };
    EXPECT_EQ(device.getProperty("hue"), nullptr);
    EXPECT_EQ(device.calls, QStringList()); // a look-up does not build the list
    device.supportProperties();
    EXPECT_EQ(device.getProperty("hue"), hue);
    EXPECT_EQ(device.getProperty("gain"), gain);
    EXPECT_EQ(device.getProperty("Gain"), nullptr);
}

TEST(PDevice, creates_its_groups_once_and_after_the_properties) {
    FakeDevice device;
    device.supportPropertyGroups();
    device.supportPropertyGroups();
    EXPECT_EQ(device.calls, calls({"properties", "groups"}));
}

TEST(PDevice, lets_groups_look_up_their_members) {
    FakeDevice device;
    device.makeProperties = [] { return QList<PDeviceProperty*>{new FakeProperty("gain")}; };
    device.makeGroups = [&] {
        auto* const group = new PDevicePropertyGroup(text("g"), text("Group"));
        group->addProperty(device.getProperty("gain"));
        group->addProperty(device.getProperty("cooler"));
        return QList<PDevicePropertyGroup*>{group};
    };
    ASSERT_EQ(device.supportPropertyGroups().size(), 1);
    EXPECT_EQ(device.supportPropertyGroups().first()->properties(), device.supportProperties());
}

TEST(PDevice, emits_no_mode_if_the_device_does_not_report_the_one_it_has) {
    FakeDevice device;
    QSignalSpy changed(&device, &PDevice::modeChanged);
    device.failsToReadMode = true;
    EXPECT_TRUE(device.setMode(device.modes.at(1)).isOk());
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed.first().first().value<PDeviceMode>(), PDeviceMode());
}

TEST(PDevice, reads_no_mode_if_the_device_does_not_report_it) {
    FakeDevice device;
    EXPECT_EQ(device.reportedMode(), device.mode);
    device.failsToReadMode = true;
    EXPECT_EQ(device.reportedMode(), PDeviceMode());
}

TEST(PDevice, reads_all_modes_or_none) {
    FakeDevice device;
    QList<PDeviceMode> modes;
    EXPECT_TRUE(device.readModes(modes).isOk());
    EXPECT_EQ(modes, device.modes);
    device.returnsUnreadModes = true;
    EXPECT_EQ(device.readModes(modes).reason(), u"the camera did not report its modes"_qs);
    EXPECT_TRUE(modes.isEmpty());
}

TEST(PDevice, that_cannot_report_its_modes_does_not_answer) {
    FakeDevice device;
    EXPECT_TRUE(device.isAnswering());
    device.failsToReadModes = true;
    EXPECT_FALSE(device.isAnswering());
    device.failsToReadModes = false;
    device.modes.clear(); // a device may have none
    EXPECT_TRUE(device.isAnswering());
}
