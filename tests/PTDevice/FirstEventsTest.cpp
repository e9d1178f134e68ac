// SPDX-License-Identifier: MIT
// Lines that are written once in the life of a process. They need a process of their own, in which
// this one test is all that happens.
#include "SimFixture.h"

#include <PCdPlugins/PTDevice/PTStreamThread.h>

#include <gmock/gmock.h>

namespace {

class FirstEvents : public SimFixture {};

} // namespace

TEST_F(FirstEvents, of_the_process_are_logged_once_whichever_camera_they_come_from) {
    loadScene({SimCameraText().withId("a").withSerial("S1"),
               SimCameraText().withId("b").withSerial("S2")});
    const auto first = open(0);
    const auto second = open(1);
    cbEvent(TOUPCAM_EVENT_IMAGE, first.get());
    cbEvent(131, first.get());
    cbEvent(TOUPCAM_EVENT_STILLIMAGE, second.get());
    EXPECT_THAT(ptTexts(log), testing::ElementsAre(
                                  QStringLiteral("ToupCam first SDK event received, code: 0x4")));
    EXPECT_EQ(log.records(QStringLiteral("PTDevice")).first().function,
              QStringLiteral("void cbEvent(unsigned int, void *)"));
    log.clear();

    // The first code ever taken off a queue is logged, also one that is ignored or fails.
    first->pullThread()->startThread();
    second->pullThread()->startThread();
    const QString dequeued = QStringLiteral("PTStreamThread first event dequeued, code: ");
    const auto lines = [&] { return ptTexts(log).filter(dequeued); };
    ASSERT_TRUE(waitUntil([&] { return !lines().isEmpty(); }));
    first->pullThread()->stopThread();
    second->pullThread()->stopThread();
    EXPECT_EQ(lines().size(), 1);
    EXPECT_THAT(lines().first().toStdString(),
                testing::AnyOf(testing::EndsWith("code: 4"), testing::EndsWith("code: 5")));
    log.clear();

    ASSERT_EQ(Toupcam_StartPullModeWithCallback(first->sdkHandle(), cbEvent, first.get()), S_OK);
    first->pullThread()->startThread();
    ASSERT_TRUE(waitUntil([&] { return first->frameLedger().produced >= 3; }));
    first->pullThread()->stopThread();
    EXPECT_THAT(ptTexts(log).filter(QStringLiteral("First live frame pulled:")),
                testing::ElementsAre(QStringLiteral("First live frame pulled: 64 x 48")));
    EXPECT_TRUE(ptTexts(log).filter(QStringLiteral("first SDK event received")).isEmpty());
}
