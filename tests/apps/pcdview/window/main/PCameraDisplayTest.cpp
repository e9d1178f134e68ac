// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/main/PCameraDisplay.h>

#include <apps/pcdview/window/FakeCameras.h>

#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/view/PImageView.h>
#include <apps/pcdview/window/camera/PCameraPage.h>
#include <apps/pcdview/window/camera/PModeChooser.h>
#include <apps/pcdview/window/main/PStatusFields.h>

#include <support/QtPrinters.h>
#include <support/WaitUntil.h>

#include <QLabel>
#include <QPushButton>
#include <QStatusBar>
#include <QTest>

namespace {

class PCameraDisplayTest : public FakeCameras {
protected:
    QString field(const char* name) const {
        const auto* const label = window.statusBar()->findChild<QLabel*>(QString::fromLatin1(name));
        return label == nullptr ? u"no such field"_qs : label->text();
    }
    /// What is shown instead of settings.
    QString noSettings() const {
        const auto* const label = window.findChild<QLabel*>(u"noSettings"_qs);
        return label == nullptr || label->isHidden() ? QString() : label->text();
    }
    bool canRecord() const {
        const auto* const button = window.findChild<QPushButton*>(u"recordButton"_qs);
        return button != nullptr && button->isEnabled();
    }

    PModeChooser modes;
    PStatusFields* const status = new PStatusFields(window.statusBar()); // the bar's
    PCameraDisplay* const display =
        new PCameraDisplay(&window, *tabs, panels, modes, *status); // the window's
    const QSignalSpy messages{display, &PCameraDisplay::messageChanged};
};

} // namespace

TEST_F(PCameraDisplayTest, shows_no_camera_at_first) {
    EXPECT_EQ(window.windowTitle(), u"pcdview"_qs);
    EXPECT_FALSE(modes.isEnabled());
    EXPECT_FALSE(canRecord());
    EXPECT_EQ(field("pace"), QString());
    EXPECT_EQ(noSettings(), u"No camera selected."_qs);
}

TEST_F(PCameraDisplayTest, shows_the_camera_of_the_tab_in_front) {
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-1"_qs));
    EXPECT_EQ(window.windowTitle(), u"Fake-1 — pcdview"_qs);
    EXPECT_EQ(modes.count(), 2);
    EXPECT_TRUE(canRecord());
    EXPECT_TRUE(field("pace").contains(u"fps"_qs));
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-2"_qs));
    EXPECT_EQ(window.windowTitle(), u"Fake-2 — pcdview"_qs);
}

TEST_F(PCameraDisplayTest, shows_that_the_camera_in_front_is_unplugged) {
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-1"_qs));
    unplugFirst();
    EXPECT_EQ(window.windowTitle(), u"Fake-1 — unplugged — pcdview"_qs);
    EXPECT_FALSE(modes.isEnabled());
    EXPECT_FALSE(canRecord());
    EXPECT_EQ(field("pace"), u"unplugged"_qs);
    EXPECT_EQ(noSettings(), u"The camera is unplugged."_qs);
}

TEST_F(PCameraDisplayTest, counts_frames_as_they_arrive) {
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-1"_qs));
    ASSERT_NO_FATAL_FAILURE(showFrame(*first, halves(Qt::gray, Qt::gray)));
    EXPECT_TRUE(waitUntil([this] { return field("size") == u"40 × 30"_qs; }));
    EXPECT_EQ(field("ledger"), u"Frames: 1, lost: 0"_qs);
}

TEST_F(PCameraDisplayTest, shows_the_zoom_of_the_tab_in_front_alone) {
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-1"_qs));
    ASSERT_NO_FATAL_FAILURE(showFrame(*first, halves(Qt::gray, Qt::gray)));
    PImageView& view = tabs->currentPage()->view();
    view.grab(); // gives the view a size, without which it does not zoom
    view.actualSize();
    EXPECT_EQ(field("zoom"), u"100 %"_qs);
    view.zoomIn();
    EXPECT_EQ(field("zoom"), u"125 %"_qs);
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-2"_qs));
    const QString zoom = field("zoom");
    view.zoomIn();
    EXPECT_EQ(field("zoom"), zoom);
}

TEST_F(PCameraDisplayTest, reports_a_mode_that_the_camera_refuses) {
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-1"_qs));
    first->refusesMode = true;
    ASSERT_EQ(modes.currentIndex(), 0);
    QTest::keyClick(&modes, Qt::Key_Down);
    EXPECT_NE(lastMessage(messages), QString());
    EXPECT_EQ(modes.currentIndex(), 0);
}

TEST_F(PCameraDisplayTest, ends_the_run_of_a_camera_that_is_left) {
    cameras->alive = {first, second, new FakeDevice("Fake", "3")};
    host.manager().updateDevices();
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-1"_qs));
    PViewCamera& camera = tabs->currentPage()->camera();
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-2"_qs));
    camera.setRunning(true);
    const QSignalSpy changes(&camera, &PViewCamera::stateChanged);
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-3"_qs));
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(PCameraDisplayTest, shows_how_many_pictures_are_to_be_saved_while_there_are_any) {
    status->showUnsaved(7);
    EXPECT_EQ(field("unsaved"), u"To be saved: 7"_qs);
    status->showUnsaved(0);
    EXPECT_EQ(field("unsaved"), QString());
}
