// SPDX-License-Identifier: MIT
#include <apps/common/doctor/PReportPrivacy.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <QDir>
#include <QFile>

namespace {

struct PrivacyRow {
    std::string name;
    QString text;
    QString expected;
};

class Privacy : public RowTest<PrivacyRow> {};

ROW_TEST(Privacy, is_kept) {
    const PReportPrivacy privacy(u"/home/an/"_qs, u"an"_qs, u"lab7.example"_qs);
    EXPECT_EQ(privacy.apply(GetParam().text), GetParam().expected);
}

ROWS(Rows, Privacy, PrivacyRow{"home_folder", u"in \"/home/an\""_qs, u"in \"~\""_qs},
     PrivacyRow{"file_in_the_home_folder", u"/home/an/a/b.so: no"_qs, u"~/a/b.so: no"_qs},
     PrivacyRow{"home_folder_of_another_user", u"/home/anna/x"_qs, u"/home/<user>/x"_qs},
     PrivacyRow{"name_of_the_user", u"/media/an/disk of an"_qs, u"/media/<user>/disk of <user>"_qs},
     PrivacyRow{"words_that_begin_like_the_user_stay", u"an-x and plan another"_qs,
                u"an-x and plan another"_qs},
     PrivacyRow{"name_of_the_computer", u"at lab7.example, lab7"_qs,
                u"at <computer>, <computer>"_qs},
     PrivacyRow{"names_in_several_lines", u"an\nlab7\n"_qs, u"<user>\n<computer>\n"_qs});

TEST(PReportPrivacy, a_system_user_at_a_computer_without_a_name_loses_no_words) {
    const PReportPrivacy privacy(u"/srv/admin"_qs, u"root"_qs, u"localhost"_qs);
    EXPECT_EQ(privacy.apply(u"/srv/admin/x: the root hub at localhost"_qs),
              u"~/x: the root hub at localhost"_qs);
}

TEST(PReportPrivacy, what_is_not_known_replaces_nothing) {
    EXPECT_EQ(PReportPrivacy(u"/"_qs, QString(), QString()).apply(u"/a/b c"_qs), u"/a/b c"_qs);
}

class PReportPrivacyFolderTest : public FolderTest {};

TEST_F(PReportPrivacyFolderTest, a_home_folder_is_left_out_under_its_other_path_too) {
    ASSERT_TRUE(QDir(path(QString())).mkdir(u"real"_qs));
    ASSERT_TRUE(QFile::link(path(u"real"_qs), path(u"link"_qs)));
    const PReportPrivacy privacy(path(u"link"_qs), u"an"_qs, QString());
    EXPECT_EQ(privacy.apply(path(u"link"_qs) + u"/a "_qs + QDir(path(u"real"_qs)).canonicalPath() +
                            u"/b"_qs),
              u"~/a ~/b"_qs);
}

TEST(PReportPrivacy, this_system_has_a_home_folder) {
    EXPECT_EQ(PReportPrivacy::ofThisSystem().apply(QDir::homePath() + u"/a"_qs), u"~/a"_qs);
}

} // namespace
