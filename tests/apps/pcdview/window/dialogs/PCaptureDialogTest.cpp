// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/dialogs/PCaptureDialog.h>

#include <apps/pcdview/capture/PCaptureFolder.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>

#include <QComboBox>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QTest>

#include <memory>

namespace {

class PCaptureDialogTest : public FolderTest {
protected:
    PCaptureDialogTest() {
        QCoreApplication::setOrganizationName(u"pcd"_qs);
        QCoreApplication::setApplicationName(u"pcdview"_qs);
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, path(u"settings"_qs));
        PCaptureFolder::setPath(path(u"captures"_qs));
        dialog = std::make_unique<PCaptureDialog>(u"Fake-1"_qs);
        dialog->show();
    }

    template <typename Widget>
    Widget& field(const char* name) {
        return *dialog->findChild<Widget*>(QString::fromLatin1(name));
    }
    void type(const char* name, const QString& text) {
        auto& line = field<QLineEdit>(name);
        line.selectAll();
        QTest::keyClicks(&line, text);
    }
    QString example() { return field<QLabel>("captureExample").text(); }
    QPushButton& button(QDialogButtonBox::StandardButton which) {
        return *dialog->findChild<QDialogButtonBox*>()->button(which);
    }
    void click(QDialogButtonBox::StandardButton which) {
        QTest::mouseClick(&button(which), Qt::LeftButton);
    }

    std::unique_ptr<PCaptureDialog> dialog;
};

} // namespace

TEST_F(PCaptureDialogTest, begins_with_the_current_settings) {
    EXPECT_EQ(field<QLineEdit>("captureFolderField").text(), path(u"captures"_qs));
    EXPECT_EQ(field<QLineEdit>("captureNamesField").text(), PNamePattern().text());
    EXPECT_TRUE(example().startsWith(u"Fake-1"_qs)) << example().toStdString();
    EXPECT_TRUE(example().endsWith(u".png"_qs)) << example().toStdString();
}

TEST_F(PCaptureDialogTest, shows_the_next_name_while_the_user_types) {
    type("captureNamesField", u"slide {n} of {camera}"_qs);
    EXPECT_EQ(example(), u"slide 1 of Fake-1.png"_qs);
    QTest::keyClick(&field<QComboBox>("captureEndingField"), Qt::Key_Down);
    EXPECT_EQ(example(), u"slide 1 of Fake-1.tif"_qs);
}

TEST_F(PCaptureDialogTest, remembers_what_was_accepted) {
    type("captureFolderField", path(u"other"_qs));
    type("captureNamesField", u"slide {n}"_qs);
    QTest::keyClick(&field<QComboBox>("captureEndingField"), Qt::Key_Down);
    click(QDialogButtonBox::Ok);
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_EQ(PCaptureFolder::path(), path(u"other"_qs));
    EXPECT_EQ(PCaptureFolder::pattern().text(), u"slide {n}"_qs);
    EXPECT_EQ(PCaptureFolder::stillEnding(), u".tif"_qs);
}

TEST_F(PCaptureDialogTest, changes_nothing_when_it_is_cancelled) {
    type("captureFolderField", path(u"other"_qs));
    type("captureNamesField", u"slide {n}"_qs);
    click(QDialogButtonBox::Cancel);
    EXPECT_EQ(PCaptureFolder::path(), path(u"captures"_qs));
    EXPECT_EQ(PCaptureFolder::pattern().text(), PNamePattern().text());
}

TEST_F(PCaptureDialogTest, does_not_accept_a_folder_that_is_not_absolute) {
    type("captureFolderField", u"pictures"_qs);
    EXPECT_FALSE(button(QDialogButtonBox::Ok).isEnabled());
    EXPECT_EQ(example(), u"\"pictures\" is not an absolute path"_qs);
}

TEST_F(PCaptureDialogTest, does_not_accept_what_is_not_a_file_name) {
    type("captureNamesField", u"a/b"_qs);
    EXPECT_FALSE(button(QDialogButtonBox::Ok).isEnabled());
    EXPECT_TRUE(example().contains(u"\"/\""_qs)) << example().toStdString();
    type("captureNamesField", u"a"_qs);
    EXPECT_TRUE(button(QDialogButtonBox::Ok).isEnabled());
}
