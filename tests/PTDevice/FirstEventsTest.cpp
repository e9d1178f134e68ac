// SPDX-License-Identifier: MIT
// What happens once per process. These tests need a process of their own, and run in this order.
#include <PTDevice/SimFixture.h>

#include <PCdPlugins/PTDevice/PTStreamThread.h>

#include <QMetaType>

#include <gmock/gmock.h>

using testing::ElementsAre;

namespace {

class FirstEvents : public SimFixture {};

} // namespace

TEST_F(FirstEvents, opening_a_camera_registers_the_types_of_the_composite_values_by_name) {
    loadScene({SimCameraText()});
    const char* const names[] = {"TECDATA", "FANDATA", "ExtendedExposureData"};
    for (const char* name : names)
        EXPECT_FALSE(QMetaType::fromName(name).isValid()) << name << " is known before";
    const auto device = open();
    for (const char* name : names)
        EXPECT_TRUE(QMetaType::fromName(name).isValid()) << name;
}

TEST_F(FirstEvents, of_the_process_are_logged_once_whichever_camera_they_come_from) {
    loadScene({SimCameraText().withId("a").withSerial("S1"),
               SimCameraText().withId("b").withSerial("S2")});
    const auto first = open(0);
    const auto second = open(1);
    cbEvent(0xb, first.get());
    cbEvent(131, first.get());
    cbEvent(TOUPCAM_EVENT_STILLIMAGE, second.get());
    EXPECT_THAT(ptTexts(log), ElementsAre(u"ToupCam first SDK event received, code: 0xb"_qs));
    for (const PLogRecord& record : log.records(u"PTDevice"_qs))
        EXPECT_EQ(record.function, u"void cbEvent(unsigned int, void *)"_qs);
    log.clear();

    // The first code taken from a queue is logged, even one that is ignored or fails.
    const QString dequeued = u"PTStreamThread first event dequeued, code: "_qs;
    const auto lines = [&] { return ptTexts(log).filter(dequeued); };
    first->pullThread()->startThread();
    ASSERT_TRUE(waitUntil([&] { return !lines().isEmpty(); }));
    second->pullThread()->startThread();
    const QString pulled = u"still image event"_qs;
    ASSERT_TRUE(waitUntil([&] { return log.contains(pulled); }));
    first->pullThread()->stopThread();
    second->pullThread()->stopThread();
    EXPECT_THAT(lines(), ElementsAre(dequeued + u"11"_qs));
    log.clear();

    // Even if the SDK reports the size of a frame only once.
    ToupcamSim_reportSize("Toupcam_PullImageV2", 0, 0);
    ASSERT_EQ(Toupcam_StartPullModeWithCallback(first->sdkHandle(), cbEvent, first.get()), S_OK);
    first->pullThread()->startThread();
    ASSERT_TRUE(waitUntil([&] { return first->frameLedger().produced >= 3; }));
    first->pullThread()->stopThread();
    EXPECT_THAT(ptTexts(log).filter(u"First live frame pulled:"_qs),
                ElementsAre(u"First live frame pulled: 64 x 48"_qs));
    EXPECT_TRUE(ptTexts(log).filter(u"first SDK event received"_qs).isEmpty());
}
