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
        ASSERT_NO_FATAL_FAILURE(showFrame(*first, picture));
        window.show();
    }

    PImageView& view() { return tabs->currentPage()->view(); }
    /// The colours in which the two halves of the picture are on the screen.
    QList<QColor> shown() {
        const QImage screen = view().grab().toImage();
        const QRectF place = view().geometryOfView().pictureInView();
        const auto colourAt = [&](double part) {
            const QPointF at(place.left() + place.width() * part, place.center().y());
            return screen.pixelColor(at.toPoint());
        };
        return {colourAt(0.25), colourAt(0.75)};
    }
    bool waitForStretchedContrast() {
        return waitUntil([this] {
            const QList<QColor> colours = shown();
            return colours[0].red() < dark.red() && colours[1].red() > light.red();
        });
    }
    QString mean() const { return panels.histogram->findChild<QLabel*>(u"mean"_qs)->text(); }

    const QColor dark{50, 50, 50};
    const QColor light{150, 150, 150};
    const PImage picture = halves(dark, light);
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
    const QList<QColor> clipped{Qt::black, Qt::white};
    ASSERT_NO_FATAL_FAILURE(showFrame(*first, halves(clipped[0], clipped[1])));
    EXPECT_EQ(shown(), clipped);
    actions.clipped->trigger();
    EXPECT_NE(shown()[0], clipped[0]);
    EXPECT_NE(shown()[1], clipped[1]);
    actions.clipped->trigger();
    EXPECT_EQ(shown(), clipped);
}

TEST_F(PViewControllerTest, stretches_the_contrast_while_the_live_picture_is_stopped) {
    actions.autoContrast->trigger();
    EXPECT_TRUE(waitForStretchedContrast());
    actions.autoContrast->trigger();
    EXPECT_EQ(shown(), QList({dark, light}));
}

TEST_F(PViewControllerTest, forgets_the_levels_of_a_tab_that_was_left) {
    actions.autoContrast->trigger();
    ASSERT_TRUE(waitForStretchedContrast());
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-2"_qs)); // it has no frame to analyse yet
    view().setImage(picture);
    EXPECT_EQ(shown(), QList({dark, light}));
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
