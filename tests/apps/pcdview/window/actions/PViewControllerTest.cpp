// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/actions/PViewController.h>

#include <apps/pcdview/window/FakeCameras.h>

#include <apps/pcdview/view/PImageView.h>
#include <apps/pcdview/window/camera/PCameraPage.h>
#include <apps/pcdview/window/panels/PHistogramPanel.h>

#include <support/QtPrinters.h>
#include <support/WaitUntil.h>

#include <QAction>
#include <QDockWidget>
#include <QLabel>

namespace {

/// A grey picture of a camera in front, while no histogram is shown.
class PViewControllerTest : public FakeCameras {
protected:
    void SetUp() override {
        panels.histogram->hide();
        ASSERT_NO_FATAL_FAILURE(open(u"Fake-1"_qs));
        ASSERT_NO_FATAL_FAILURE(showFrame(*first, halves({50, 50, 50}, {150, 150, 150})));
        window.show();
    }

    PImageView& view() { return tabs->currentPage()->view(); }
    PViewStyle style() { return view().viewStyle(); }
    bool waitForStretchedContrast() {
        return waitUntil([this] { return style().black > 0 && style().white < 255; });
    }
    QString mean() const { return panels.histogram->findChild<QLabel*>(u"mean"_qs)->text(); }

    PViewController controller{actions, *tabs, *panels.histogram};
};

} // namespace

TEST_F(PViewControllerTest, zooms_the_picture_in_front) {
    actions.actualSize->trigger();
    EXPECT_EQ(view().geometryOfView().scale(), 1);
    actions.zoomIn->trigger();
    EXPECT_GT(view().geometryOfView().scale(), 1);
    actions.zoomOut->trigger();
    EXPECT_NEAR(view().geometryOfView().scale(), 1, 1e-9);
    actions.fit->trigger();
    EXPECT_GT(view().geometryOfView().scale(), 1);
}

TEST_F(PViewControllerTest, marks_clipped_pixels_while_the_action_is_checked) {
    actions.clipped->trigger();
    EXPECT_TRUE(style().markClipped);
    actions.clipped->trigger();
    EXPECT_FALSE(style().markClipped);
}

TEST_F(PViewControllerTest, stretches_the_contrast_while_the_live_picture_is_stopped) {
    actions.autoContrast->trigger();
    EXPECT_TRUE(waitForStretchedContrast());
    actions.autoContrast->trigger();
    EXPECT_EQ(style(), PViewStyle());
}

TEST_F(PViewControllerTest, forgets_the_levels_of_a_tab_that_was_left) {
    actions.autoContrast->trigger();
    ASSERT_TRUE(waitForStretchedContrast());
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-2"_qs)); // it has no picture yet
    EXPECT_EQ(style(), PViewStyle());
}

TEST_F(PViewControllerTest, analyses_the_picture_when_the_histogram_is_shown) {
    EXPECT_EQ(mean(), u"–"_qs);
    panels.histogram->show();
    EXPECT_TRUE(waitUntil([this] { return mean().contains(u"100"_qs); })) << mean().toStdString();
}

TEST_F(PViewControllerTest, analyses_new_frames_of_the_camera_in_front) {
    panels.histogram->show();
    ASSERT_NO_FATAL_FAILURE(showFrame(*first, halves({20, 20, 20}, {40, 40, 40})));
    EXPECT_TRUE(waitUntil([this] { return mean().contains(u"30"_qs); })) << mean().toStdString();
}
