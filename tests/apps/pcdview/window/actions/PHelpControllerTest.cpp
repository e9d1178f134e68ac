// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/actions/PHelpController.h>

#include <apps/pcdview/window/FakeCameras.h>

#include <support/QtPrinters.h>

#include <QAction>
#include <QMessageBox>

namespace {

class PHelpControllerTest : public FakeCameras {
protected:
    PHelpControllerTest() { new PHelpController(actions, host.sdk(), &window); } // the window's

    /// Opens a page with this action, and returns its text.
    QString openPage(QAction* action) {
        action->trigger();
        const auto pages = window.findChildren<QMessageBox*>();
        EXPECT_EQ(pages.size(), 1);
        return pages.isEmpty() ? QString() : pages.first()->text();
    }
};

} // namespace

TEST_F(PHelpControllerTest, lists_the_keys_of_all_actions_that_have_one) {
    const QString page = openPage(actions.help);
    EXPECT_TRUE(page.contains(u"Ctrl+S"_qs));
    EXPECT_TRUE(page.contains(u"Full screen"_qs));
    EXPECT_EQ(page.count(u"<tr>"_qs), actions.withShortcut().size() + 4); // four of the mouse
}

TEST_F(PHelpControllerTest, says_which_camera_library_is_in_use) {
    const QString page = openPage(actions.about);
    EXPECT_TRUE(page.contains(u"Camera library"_qs));
    EXPECT_TRUE(page.contains(u"none"_qs));
}
