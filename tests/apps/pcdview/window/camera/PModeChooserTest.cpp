// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/camera/PModeChooser.h>

#include <apps/pcdview/window/FakeCameras.h>

#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/window/camera/PCameraPage.h>

#include <PGui/WidgetHands.h>

#include <support/QtPrinters.h>

namespace {

class PModeChooserTest : public FakeCameras {
protected:
    PModeChooserTest() { first->mode = first->modes.at(1); }
    PViewCamera* camera() { return &tabs->currentPage()->camera(); }

    PModeChooser chooser;
};

} // namespace

TEST_F(PModeChooserTest, offers_the_modes_and_shows_the_one_in_use) {
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-1"_qs));
    chooser.setCamera(camera());
    EXPECT_EQ(chooser.count(), 2);
    EXPECT_EQ(chooser.currentText(), u"320x240"_qs);
}

TEST_F(PModeChooserTest, shows_no_mode_if_the_one_in_use_cannot_be_read) {
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-1"_qs));
    first->failsToReadMode = true; // and returns the first
    chooser.setCamera(camera());
    EXPECT_EQ(chooser.count(), 2);
    EXPECT_EQ(chooser.currentIndex(), -1);
    EXPECT_EQ(chooser.placeholderText(), u"not reported"_qs);
    chooser.setCamera(nullptr);
    EXPECT_EQ(chooser.placeholderText(), QString());
}

TEST_F(PModeChooserTest, shows_that_a_size_was_not_reported) {
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-1"_qs));
    first->modes[1] = {0, 0, u"0x0"_qs, first->modes[1].id, 24};
    chooser.setCamera(camera());
    EXPECT_EQ(chooser.itemText(0), first->modes[0].name);
    EXPECT_EQ(chooser.itemText(1),
              u"Mode %1: size not reported"_qs.arg(QString::fromLatin1(first->modes[1].id)));
}

TEST_F(PModeChooserTest, the_wheel_changes_no_mode_even_after_a_click) {
    ASSERT_NO_FATAL_FAILURE(open(u"Fake-1"_qs));
    chooser.setCamera(camera());
    ASSERT_TRUE(showActive(&chooser));
    for (const int notches : {-1, 1}) {
        turnWheel(&chooser, notches);
        EXPECT_EQ(chooser.currentText(), u"320x240"_qs);
        EXPECT_EQ(first->mode, first->modes.at(1));
        chooser.setFocus(); // as a click does
    }
}
