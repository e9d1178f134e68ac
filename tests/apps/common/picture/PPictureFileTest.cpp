// SPDX-License-Identifier: MIT
#include <apps/common/picture/PPictureFile.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

QImage smallPicture() {
    QImage image(8, 4, QImage::Format_BGR888);
    image.fill(QColor(10, 20, 30));
    return image;
}

class PictureFile : public FolderTest {
protected:
    PStatus save(const QString& name, PPictureFile::Existing existing) const {
        return PPictureFile::save(path(name), smallPicture(), {{{u"Camera"_qs, u"Käfer: 1"_qs}}},
                                  existing, PPictureFile::Content::Frame);
    }
};

TEST_F(PictureFile, the_text_comes_back_out_of_the_file) {
    ASSERT_TRUE(save(u"a.png"_qs, PPictureFile::Existing::Keep).isOk());
    const QImage image(path(u"a.png"_qs));
    EXPECT_EQ(image.text(u"Camera"_qs), u"Käfer: 1"_qs);
    EXPECT_EQ(image.pixelColor(7, 3), QColor(10, 20, 30));
}

TEST_F(PictureFile, text_under_a_key_with_a_blank_comes_back_out_of_the_file) {
    const PPictureMetadata text{{u"Setting gain"_qs, u"5: five"_qs}, {u"Setting hue"_qs, u"6"_qs}};
    ASSERT_TRUE(PPictureFile::save(path(u"a.png"_qs), smallPicture(), {text},
                                   PPictureFile::Existing::Keep, PPictureFile::Content::Frame)
                    .isOk());
    const QImage image(path(u"a.png"_qs));
    EXPECT_EQ(image.textKeys(), (QStringList{u"Setting gain"_qs, u"Setting hue"_qs}));
    EXPECT_EQ(image.text(u"Setting gain"_qs), u"5: five"_qs);
    EXPECT_EQ(image.text(u"Setting hue"_qs), u"6"_qs);
}

TEST_F(PictureFile, an_ending_in_capital_letters_is_known_too) {
    EXPECT_TRUE(PPictureFile::checkName(u"A.PNG"_qs).isOk());
    EXPECT_TRUE(PPictureFile::checkName(u"a.Tiff"_qs).isOk());
    EXPECT_FALSE(PPictureFile::checkName(u"png"_qs).isOk());
}

TEST_F(PictureFile, the_longest_name_that_is_accepted_can_be_saved) {
    const QString longest = QString(122, u'ß') + u".png"_qs; // 248 bytes
    EXPECT_EQ(PPictureFile::prepareFolder(path(longest)).reason(), QString());
    EXPECT_EQ(save(longest, PPictureFile::Existing::Keep).reason(), QString());
    EXPECT_EQ(save(longest, PPictureFile::Existing::Replace).reason(), QString());
    EXPECT_EQ(QDir(path(QString())).entryList(QDir::Files | QDir::Hidden), QStringList(longest));
}

TEST_F(PictureFile, a_name_that_is_too_long_is_refused_before_anything_is_saved) {
    const QString name = u"a"_qs + QString(122, u'ß') + u".png"_qs;
    EXPECT_EQ(
        PPictureFile::prepareFolder(path(name)).reason(),
        u"cannot save \"%1\": its name has 249 bytes: expected at most 248"_qs.arg(path(name)));
}

TEST_F(PictureFile, an_existing_file_is_kept_if_it_must_be) {
    writeFile(path(u"a.png"_qs), "old");
    const PStatus status = save(u"a.png"_qs, PPictureFile::Existing::Keep);
    EXPECT_FALSE(status.isOk());
    EXPECT_TRUE(status.reason().contains(path(u"a.png"_qs)));
    EXPECT_EQ(readFile(path(u"a.png"_qs)), QByteArray("old"));
    EXPECT_EQ(QDir(path(QString())).entryList(QDir::Files), QStringList(u"a.png"_qs));
}

TEST_F(PictureFile, an_existing_file_is_replaced_if_it_may_be) {
    writeFile(path(u"a.png"_qs), "old");
    EXPECT_TRUE(save(u"a.png"_qs, PPictureFile::Existing::Replace).isOk());
    EXPECT_EQ(QImage(path(u"a.png"_qs)).size(), QSize(8, 4));
}

TEST_F(PictureFile, both_ways_give_a_file_with_the_same_permissions) {
    ASSERT_TRUE(save(u"a.png"_qs, PPictureFile::Existing::Keep).isOk());
    ASSERT_TRUE(save(u"b.png"_qs, PPictureFile::Existing::Replace).isOk());
    EXPECT_EQ(QFileInfo(path(u"a.png"_qs)).permissions(),
              QFileInfo(path(u"b.png"_qs)).permissions());
}

TEST_F(PictureFile, a_folder_that_is_not_there_is_a_failure_that_names_the_file) {
    const PStatus status = save(u"none/a.png"_qs, PPictureFile::Existing::Keep);
    EXPECT_FALSE(status.isOk());
    EXPECT_TRUE(status.reason().contains(path(u"none/a.png"_qs)));
}

TEST_F(PictureFile, an_empty_picture_is_not_saved) {
    const PStatus status =
        PPictureFile::save(path(u"a.png"_qs), QImage(), {}, PPictureFile::Existing::Replace,
                           PPictureFile::Content::Frame);
    EXPECT_FALSE(status.isOk());
    EXPECT_FALSE(QFile::exists(path(u"a.png"_qs)));
}

} // namespace
