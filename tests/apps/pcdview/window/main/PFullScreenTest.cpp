// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/main/PFullScreen.h>

#include <apps/pcdview/window/FakeCameras.h>

#include <apps/pcdview/view/PImageView.h>
#include <apps/pcdview/window/camera/PCameraPage.h>

#include <QAction>
#include <QDockWidget>
#include <QMenuBar>
#include <QStatusBar>
#include <QTabBar>
#include <QTest>
#include <QToolBar>

namespace {

class PFullScreenTest : public FakeCameras {
protected:
    PFullScreenTest() {
        window.menuBar()->addMenu(u"Menu"_qs);
        bar->setObjectName(u"bar"_qs);
        window.statusBar()->showMessage(u"message"_qs);
        new PFullScreen(&window, actions, *tabs); // the window's
    }

    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(open(u"Fake-1"_qs));
        window.show();
    }

    QList<QWidget*> around() const {
        return {window.menuBar(), window.statusBar(), bar, panels.docks().first(),
                tabs->findChild<QTabBar*>(u"tabs"_qs)};
    }

    QToolBar* const bar = window.addToolBar(u"Bar"_qs);
};

} // namespace

TEST_F(PFullScreenTest, hides_all_but_the_picture_while_its_action_is_checked) {
    for (const QWidget* widget : around())
        ASSERT_TRUE(widget->isVisible()) << widget->metaObject()->className();
    actions.fullScreen->setChecked(true);
    EXPECT_TRUE(window.isFullScreen());
    EXPECT_TRUE(tabs->currentPage()->view().isVisible());
    for (const QWidget* widget : around())
        EXPECT_FALSE(widget->isVisible()) << widget->metaObject()->className();
    actions.fullScreen->setChecked(false);
    EXPECT_FALSE(window.isFullScreen());
    for (const QWidget* widget : around())
        EXPECT_TRUE(widget->isVisible()) << widget->metaObject()->className();
}

TEST_F(PFullScreenTest, leaves_a_dock_closed_that_was_closed) {
    panels.docks().first()->close();
    actions.fullScreen->setChecked(true);
    actions.fullScreen->setChecked(false);
    EXPECT_FALSE(panels.docks().first()->isVisible());
    EXPECT_TRUE(panels.docks().value(1)->isVisible());
}

TEST_F(PFullScreenTest, goes_back_to_a_maximized_window) {
    window.showMaximized();
    actions.fullScreen->setChecked(true);
    actions.fullScreen->setChecked(false);
    EXPECT_TRUE(window.isMaximized());
}

TEST_F(PFullScreenTest, follows_a_double_click_on_the_picture) {
    QTest::mouseDClick(&tabs->currentPage()->view(), Qt::LeftButton);
    EXPECT_TRUE(actions.fullScreen->isChecked());
    EXPECT_TRUE(window.isFullScreen());
    QTest::mouseDClick(&tabs->currentPage()->view(), Qt::LeftButton);
    EXPECT_FALSE(window.isFullScreen());
}

TEST_F(PFullScreenTest, goes_back_when_the_last_camera_is_closed) {
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-2"_qs));
    actions.fullScreen->setChecked(true);
    tabs->closePage(tabs->currentPage());
    EXPECT_TRUE(window.isFullScreen());
    tabs->closePage(tabs->currentPage());
    EXPECT_FALSE(window.isFullScreen());
    EXPECT_TRUE(bar->isVisible());
}
