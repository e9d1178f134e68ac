// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/actions/PCameraController.h>

#include <apps/pcdview/window/FakeCameras.h>

#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/view/PImageView.h>
#include <apps/pcdview/window/actions/PRecordController.h>
#include <apps/pcdview/window/camera/PCameraPage.h>
#include <apps/pcdview/window/panels/PCameraListPanel.h>

#include <PCd/FakeProperty.h>
#include <PCd/PScanAreaRange.h>
#include <PCd/property/PPropertyRoles.h>

#include <support/QtPrinters.h>

#include <QAction>
#include <QApplication>
#include <QInputDialog>
#include <QListWidget>
#include <QTabBar>
#include <QTest>
#include <QTimer>

namespace {

class PCameraControllerTest : public FakeCameras {
protected:
    PCameraControllerTest() {
        first->makeProperties = [] {
            auto* const region = new FakeProperty("roi", QRect(0, 0, 640, 480));
            region->rangeInDevice = QVariant::fromValue(PScanAreaRange{});
            PPropertyRoles::declare(*region, {{PRole::Region}});
            return QList<PDeviceProperty*>{region};
        };
    }

    PCameraPage& page() { return *tabs->currentPage(); }
    QListWidget& list() { return *panels.cameras->findChild<QListWidget*>(u"cameras"_qs); }

    PRecordController recording{actions.record, *tabs, panels, recordings, &window};
    PCameraController* const controller =
        new PCameraController(actions, *tabs, *panels.cameras, recording, &window); // the window's
    const QSignalSpy messages{controller, &PCameraController::messageChanged};
};

} // namespace

TEST_F(PCameraControllerTest, enables_the_actions_of_a_camera_only_where_one_is_open) {
    for (const QAction* action : actions.ofCamera())
        EXPECT_FALSE(action->isEnabled()) << action->objectName().toStdString();
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-1"_qs));
    for (const QAction* action : actions.ofCamera())
        EXPECT_TRUE(action->isEnabled()) << action->objectName().toStdString();
    EXPECT_TRUE(actions.live->isChecked());
}

TEST_F(PCameraControllerTest, leaves_an_unplugged_camera_what_needs_no_device) {
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-1"_qs));
    unplugFirst();
    for (const QAction* action :
         {actions.live, actions.snapshot, actions.record, actions.loadProfile, actions.saveProfile,
          actions.region, actions.wholeSensor})
        EXPECT_FALSE(action->isEnabled()) << action->objectName().toStdString();
    for (const QAction* action : {actions.savePicture, actions.closeCamera, actions.fit})
        EXPECT_TRUE(action->isEnabled()) << action->objectName().toStdString();
    EXPECT_FALSE(actions.live->isChecked());
}

TEST_F(PCameraControllerTest, reports_a_camera_behind_another_tab_that_goes_and_comes_back) {
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-1"_qs));
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-2"_qs));
    const auto before = messages.count();
    unplugFirst();
    ASSERT_EQ(messages.count(), before + 1);
    EXPECT_EQ(lastMessage(messages), u"Fake-1 was unplugged"_qs);
    cameras->alive = {new FakeDevice("Fake", "1"), second};
    host.manager().updateDevices();
    ASSERT_EQ(messages.count(), before + 2);
    EXPECT_EQ(lastMessage(messages), u"Fake-1 is plugged in again"_qs);
}

TEST_F(PCameraControllerTest, leaves_the_camera_in_front_to_its_tab_when_it_goes) {
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-2"_qs));
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-1"_qs));
    const auto before = messages.count();
    unplugFirst();
    EXPECT_EQ(messages.count(), before);
}

TEST_F(PCameraControllerTest, selects_the_camera_in_front_in_the_list) {
    for (const QString& id : {u"Fake-1"_qs, u"Fake-2"_qs, u"Fake-1"_qs}) {
        ASSERT_NO_FATAL_FAILURE(open(id));
        ASSERT_NE(list().currentItem(), nullptr);
        EXPECT_EQ(list().currentItem()->data(Qt::UserRole).toString(), id);
    }
}

TEST_F(PCameraControllerTest, offers_regions_only_for_a_camera_that_has_them) {
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-2"_qs));
    EXPECT_FALSE(actions.region->isEnabled());
    EXPECT_FALSE(actions.wholeSensor->isEnabled());
}

TEST_F(PCameraControllerTest, starts_and_stops_the_live_picture) {
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-1"_qs));
    actions.live->trigger();
    EXPECT_EQ(page().camera().state(), PViewCamera::State::Paused);
    actions.live->trigger();
    EXPECT_EQ(page().camera().state(), PViewCamera::State::Live);
    EXPECT_EQ(messages.count(), 0);
}

TEST_F(PCameraControllerTest, reports_a_live_picture_that_does_not_start) {
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-1"_qs));
    actions.live->trigger();
    first->refusesStart = true;
    actions.live->trigger();
    EXPECT_NE(lastMessage(messages), QString());
    EXPECT_FALSE(actions.live->isChecked());
}

TEST_F(PCameraControllerTest, explains_the_region_tool_and_puts_it_away_with_the_tab) {
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-1"_qs));
    PCameraPage& left = page();
    actions.region->trigger();
    EXPECT_EQ(left.view().tool(), PImageView::Tool::Region);
    EXPECT_TRUE(lastMessage(messages).contains(u"mouse"_qs));
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-2"_qs));
    EXPECT_EQ(left.view().tool(), PImageView::Tool::Move);
    EXPECT_FALSE(actions.region->isChecked());
    EXPECT_EQ(lastMessage(messages), QString());
}

TEST_F(PCameraControllerTest, puts_the_region_tool_away_with_escape) {
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-1"_qs));
    actions.region->trigger();
    QTest::keyClick(&page().view(), Qt::Key_Escape);
    EXPECT_FALSE(actions.region->isChecked());
    EXPECT_EQ(page().view().tool(), PImageView::Tool::Move);
}

TEST_F(PCameraControllerTest, sets_the_size_of_a_pixel_that_is_entered) {
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-1"_qs));
    QTimer::singleShot(0, &window, [] {
        auto* const dialog = qobject_cast<QInputDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        dialog->setDoubleValue(0.25);
        dialog->accept();
    });
    actions.pixelSize->trigger();
    EXPECT_EQ(page().pixelSize(), 0.25);
}

TEST_F(PCameraControllerTest, lists_the_cameras_and_opens_the_one_chosen) {
    ASSERT_EQ(list().count(), 2);
    list().setCurrentRow(1);
    QTest::keyClick(&list(), Qt::Key_Return);
    ASSERT_NE(tabs->currentPage(), nullptr);
    EXPECT_EQ(page().camera().identity().id, u"Fake-2"_qs);
    EXPECT_TRUE(list().item(1)->text().endsWith(u"open"_qs));
}

TEST_F(PCameraControllerTest, reports_a_camera_of_the_list_that_does_not_open) {
    second->refusesLink = true;
    emit panels.cameras->openRequested(u"Fake-2"_qs);
    EXPECT_NE(lastMessage(messages), QString());
}

TEST_F(PCameraControllerTest, searches_for_cameras) {
    cameras->alive = {first, second, new FakeDevice("Fake", "3")};
    actions.search->trigger();
    EXPECT_EQ(list().count(), 3);
}

TEST_F(PCameraControllerTest, closes_the_camera_in_front_or_the_tab_that_is_clicked) {
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-1"_qs));
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-2"_qs));
    emit tabs->closeRequested(tabs->pages().first());
    ASSERT_EQ(tabs->pages().size(), 1);
    EXPECT_EQ(page().camera().identity().id, u"Fake-2"_qs);
    actions.closeCamera->trigger();
    EXPECT_EQ(tabs->currentPage(), nullptr);
    EXPECT_FALSE(actions.closeCamera->isEnabled());
}
