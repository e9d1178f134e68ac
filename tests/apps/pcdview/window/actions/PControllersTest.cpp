// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/actions/PControllers.h>

#include <apps/pcdview/window/FakeCameras.h>

#include <apps/pcdview/view/PImageView.h>
#include <apps/pcdview/window/actions/PProfileController.h>
#include <apps/pcdview/window/camera/PCameraPage.h>

#include <support/QtPrinters.h>

#include <QAction>
#include <QMessageBox>

namespace {

class PControllersTest : public FakeCameras {
protected:
    void SetUp() override { ASSERT_NO_FATAL_FAILURE(open(u"Fake-1"_qs)); }

    PControllers* const controllers =
        new PControllers(actions, *tabs, panels, recordings, host.sdk(), &window); // the window's
    const QSignalSpy messages{controllers, &PControllers::messageChanged};
};

} // namespace

TEST_F(PControllersTest, emit_the_messages_of_each) {
    actions.live->trigger();
    first->refusesStart = true;
    actions.live->trigger();
    EXPECT_EQ(messages.count(), 1); // of the camera
    actions.savePicture->trigger();
    EXPECT_EQ(messages.count(), 2); // of the picture
    first->refusesStart = false;
    actions.live->trigger();
    actions.record->trigger();
    EXPECT_EQ(messages.count(), 3); // of the recording
    auto* const profile = window.findChild<PProfileController*>();
    ASSERT_NE(profile, nullptr);
    profile->saveTo(path(u"profile.json"_qs));
    EXPECT_EQ(messages.count(), 4);
}

TEST_F(PControllersTest, carry_out_help_and_view_actions) {
    actions.actualSize->trigger();
    EXPECT_EQ(tabs->currentPage()->view().geometryOfView().scale(), 1);
    actions.about->trigger();
    EXPECT_NE(window.findChild<QMessageBox*>(), nullptr);
}
