// SPDX-License-Identifier: MIT
// Whether a desktop recognises the profiles that the programs save.
#include <PCd/FakeDevice.h>

#include <PCd/profile/PDeviceProfileFile.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <QDir>
#include <QMimeDatabase>
#include <QProcess>

namespace {

struct NameRow {
    const char* name;
    const char* file;
    const char* type;
};

/// On a desktop with the type of the profiles.
class ProfileTypeTest : public RowTest<NameRow> {
protected:
    /// Once for all, because the table of types is read only once.
    void SetUp() override {
        static bool isSetUp = false;
        if (isSetUp)
            return;
        ASSERT_TRUE(QDir().mkpath(folder().filePath(u"mime/packages"_qs)));
        ASSERT_TRUE(QFile::copy(QStringLiteral(PROFILE_TYPE),
                                folder().filePath(u"mime/packages/pcdview.xml"_qs)));
        ASSERT_EQ(QProcess::execute(u"update-mime-database"_qs, {folder().filePath(u"mime"_qs)}),
                  0);
        ASSERT_TRUE(qputenv("XDG_DATA_HOME", folder().path().toLocal8Bit()));
        isSetUp = true;
    }
    static QTemporaryDir& folder() {
        static QTemporaryDir folder;
        return folder;
    }
};

} // namespace

ROW_TEST(ProfileTypeTest, is_recognised_by_name_or_else_by_content_and_is_JSON_for_editors) {
    FakeDevice camera;
    const QString file = folder().filePath(QString::fromLatin1(GetParam().file));
    ASSERT_TRUE(PDeviceProfileFile::save(camera, file).isOk());
    const QMimeType type = QMimeDatabase().mimeTypeForFile(file);
    EXPECT_EQ(type.name(), QString::fromLatin1(GetParam().type));
    EXPECT_TRUE(type.inherits(u"application/json"_qs));
}

ROWS(Names, ProfileTypeTest,
     NameRow{"as_saved_by_the_viewer", "a.pcdprofile.json", "application/x-pcd-profile+json"},
     NameRow{"without_an_ending", "profile", "application/x-pcd-profile+json"},
     NameRow{"with_the_ending_of_all_JSON_it_stays_that", "a.json", "application/json"});
