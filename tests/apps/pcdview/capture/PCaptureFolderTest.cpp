// SPDX-License-Identifier: MIT
#include <apps/pcdview/capture/PCaptureFolder.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>

#include <QDir>
#include <QSettings>

namespace {

class PCaptureFolderTest : public FolderTest {
protected:
    PCaptureFolderTest() {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, path(u"settings"_qs));
        QCoreApplication::setOrganizationName(u"pcd"_qs);
        QCoreApplication::setApplicationName(u"pcdview"_qs);
        QDir().mkpath(path(u"out"_qs));
        PCaptureFolder::setPath(path(u"out"_qs));
        PNamePattern numbered;
        EXPECT_TRUE(numbered.setText(u"slide-{n}"_qs).isOk());
        PCaptureFolder::setPattern(numbered);
    }

    static QString newPath() {
        return PCaptureFolder::newPath(u"Cam"_qs, QDateTime::currentDateTime(), u".png"_qs);
    }
};

} // namespace

TEST_F(PCaptureFolderTest, a_name_that_a_file_has_is_not_used_again) {
    writeFile(path(u"out/slide-1.png"_qs), "x");
    EXPECT_EQ(newPath(), path(u"out/slide-2.png"_qs));
}

TEST_F(PCaptureFolderTest, a_name_whose_file_is_still_to_come_is_not_used_again) {
    EXPECT_EQ(newPath(), path(u"out/slide-1.png"_qs));
    EXPECT_EQ(newPath(), path(u"out/slide-2.png"_qs));
}

TEST_F(PCaptureFolderTest, previewing_the_next_name_does_not_use_it_up) {
    const QDateTime now = QDateTime::currentDateTime();
    EXPECT_EQ(PCaptureFolder::nextPath(u"Cam"_qs, now, u".png"_qs), path(u"out/slide-1.png"_qs));
    EXPECT_EQ(newPath(), path(u"out/slide-1.png"_qs));
}

TEST_F(PCaptureFolderTest, a_link_to_nowhere_has_a_name_too) {
    ASSERT_TRUE(QFile::link(path(u"out/nowhere"_qs), path(u"out/slide-1.png"_qs)));
    EXPECT_EQ(newPath(), path(u"out/slide-2.png"_qs));
}

TEST_F(PCaptureFolderTest, an_invalid_pattern_in_the_settings_leaves_the_usual_one) {
    QSettings().setValue(u"capture/names"_qs, u"{what}/{n}"_qs);
    EXPECT_EQ(PCaptureFolder::pattern().text(), PNamePattern().text());
}

TEST_F(PCaptureFolderTest, still_pictures_are_png_unless_they_are_tiff) {
    EXPECT_EQ(PCaptureFolder::stillEnding(), u".png"_qs);
    PCaptureFolder::setStillEnding(u".tif"_qs);
    EXPECT_EQ(PCaptureFolder::stillEnding(), u".tif"_qs);
    QSettings().setValue(u"capture/stillEnding"_qs, u".exe"_qs);
    EXPECT_EQ(PCaptureFolder::stillEnding(), u".png"_qs);
}
