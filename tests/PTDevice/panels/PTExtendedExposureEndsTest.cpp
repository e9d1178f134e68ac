// SPDX-License-Identifier: MIT
// The exposure panel when panel, property and device end in any order, while images arrive.
#include <PTDevice/panels/ExposurePanelFixture.h>

#include <support/QtPrinters.h>

#include <gmock/gmock.h>

#include <thread>

using testing::IsEmpty;

namespace {

class PTExtendedExposureEnds : public ExposurePanelFixture {
protected:
    void openRunning(const char* run) {
        ASSERT_TRUE(device->link().isOk());
        ASSERT_TRUE(device->startStream().isOk());
        openWith(triggerRecord());
        QObject::connect(device.get(), &PDevice::snapshotTaken, [this] { ++snapshots; });
        clickOn(button(run));
    }
    int snapshots = 0;
};

} // namespace

TEST_F(PTExtendedExposureEnds, images_after_the_panels_end_are_ignored) {
    openRunning("pbRepeatMode");
    ASSERT_TRUE(waitUntil([&] { return snapshots >= 2; }));
    panel.reset();
    QCoreApplication::processEvents(); // those still to become snapshots
    const int before = snapshots;
    int images = 0;
    QObject::connect(device.get(), &PDevice::imageChanged, [&] { ++images; });
    ASSERT_TRUE(waitUntil([&] { return images >= 5; }));
    EXPECT_EQ(snapshots, before);
}

TEST_F(PTExtendedExposureEnds, the_panel_may_end_while_images_come) {
    for (int round = 0; round < 20; ++round) {
        openCamera(fullCamera(400));
        openRunning("pbRepeatMode");
        ASSERT_TRUE(waitUntil([&] { return snapshots > round; }));
        panel.reset();
        snapshots = round + 1;
    }
}

TEST_F(PTExtendedExposureEnds, an_image_from_another_thread_is_handled_on_the_panels) {
    openRunning("pbRepeatMode");
    stopAndDeliver();
    const int before = snapshots;
    std::thread([&] { emit device->imageChanged(smallImage()); }).join();
    EXPECT_EQ(snapshots, before);
    EXPECT_TRUE(waitUntil([&] { return snapshots == before + 1; }));
}

TEST_F(PTExtendedExposureEnds, an_image_from_another_thread_may_find_the_panel_gone) {
    openRunning("pbRepeatMode");
    stopAndDeliver();
    const int before = snapshots;
    std::thread([&] { emit device->imageChanged(smallImage()); }).join();
    panel.reset();
    QCoreApplication::processEvents();
    EXPECT_EQ(snapshots, before);
}

TEST_F(PTExtendedExposureEnds, the_events_that_a_single_run_processes_may_delete_the_panel) {
    openRunning("pbRunOnce");
    // The snapshot arrives while the panel processes events in its handler of the image.
    QObject::connect(device.get(), &PDevice::snapshotTaken, [this] { panel.reset(); });
    EXPECT_TRUE(waitUntil([&] { return panel == nullptr; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(snapshots, 1);
}

TEST_F(PTExtendedExposureEnds, the_events_that_a_sequence_processes_may_delete_the_panel) {
    openRunning("pbSequence");
    QObject::connect(device.get(), &PDevice::snapshotTaken, [this] { panel.reset(); });
    EXPECT_TRUE(waitUntil([&] { return panel == nullptr; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(snapshots, 1);
}

TEST_F(PTExtendedExposureEnds, the_events_that_a_run_processes_may_delete_the_device) {
    openRunning("pbRunOnce");
    QObject::connect(device.get(), &PDevice::snapshotTaken, [this] { device.reset(); });
    EXPECT_TRUE(waitUntil([&] { return device == nullptr; }));
    QCoreApplication::processEvents();
    EXPECT_FALSE(panel->isEnabled());
    EXPECT_EQ(snapshots, 1);
}

TEST_F(PTExtendedExposureEnds, after_the_end_of_its_camera_it_is_disabled_and_sends_nothing) {
    openWith(triggerRecord());
    device.reset();
    SimJournal::clear();
    EXPECT_FALSE(panel->isEnabled());
    for (const char* name : {"pbRunOnce", "pbSequence", "pbRepeatMode", "pbVideo"})
        button(name)->toggle();
    box("spincount")->stepUp();
    EXPECT_THAT(SimJournal::lines(), IsEmpty());
}

TEST_F(PTExtendedExposureEnds, after_the_end_of_its_camera_in_a_run_it_sends_nothing) {
    openRunning("pbRepeatMode");
    ASSERT_TRUE(waitUntil([&] { return snapshots >= 1; }));
    device.reset();
    SimJournal::clear();
    button("pbRepeatMode")->toggle();
    EXPECT_THAT(SimJournal::lines(), IsEmpty());
}

TEST_F(PTExtendedExposureEnds, an_image_after_the_propertys_end_is_ignored) {
    openRunning("pbRepeatMode");
    stopAndDeliver();
    const int before = snapshots;
    delete exposure();
    EXPECT_FALSE(panel->isEnabled());
    emit device->imageChanged(smallImage());
    QCoreApplication::processEvents();
    EXPECT_EQ(snapshots, before);
}

TEST_F(PTExtendedExposureEnds,
       a_property_that_no_device_has_taken_can_be_edited_but_not_triggered) {
    PTExtendedExposure free(device->sdkHandle(), "free", QString());
    panel.reset(free.createWidget());
    EXPECT_FALSE(button("pbTrigger")->isEnabled());
    EXPECT_TRUE(showActive(panel.get()));
    enterNumber(target(), u"99"_qs);
    EXPECT_EQ(free.value().target, 99);
}

TEST_F(PTExtendedExposureEnds, a_change_after_the_panels_end_is_ignored) {
    openWith(ExtendedExposureData());
    panel.reset();
    ExtendedExposureData d;
    d.target = 66;
    set(d);
    EXPECT_EQ(stored(), d);
    EXPECT_EQ(puts().size(), 5U);
}
