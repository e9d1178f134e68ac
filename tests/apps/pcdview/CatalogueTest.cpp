// SPDX-License-Identifier: MIT
#include <apps/common/picture/PPictureFile.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>

#include <QCoreApplication>
#include <QTranslator>

#include <gtest/gtest.h>

class CatalogueTest : public FolderTest {};

TEST_F(CatalogueTest, the_program_brings_its_russian_texts) {
    Q_INIT_RESOURCE(pcdview);
    QTranslator translator;
    ASSERT_TRUE(translator.load(QStringLiteral(":/pcdview/pcdview_ru.qm")));
    EXPECT_EQ(translator.language(), QStringLiteral("ru"));
    EXPECT_EQ(translator.translate("PMenuBar", "&Camera"), QStringLiteral("&Камера"));
    EXPECT_EQ(translator.translate("PDevicePanel", "Other"), QStringLiteral("Прочее"));
}

TEST_F(CatalogueTest, reasons_that_come_from_below_the_window_are_in_it) {
    Q_INIT_RESOURCE(pcdview);
    QTranslator translator;
    ASSERT_TRUE(translator.load(QStringLiteral(":/pcdview/pcdview_ru.qm")));
    QCoreApplication::installTranslator(&translator);
    writeFile(path(QStringLiteral("file")), "here already");
    EXPECT_EQ(PPictureFile::prepareFolder(path(QStringLiteral("file/picture.png"))).reason(),
              QStringLiteral("не удалось сохранить «%1»: не удалось создать папку «%2»")
                  .arg(path(QStringLiteral("file/picture.png")), path(QStringLiteral("file"))));
}
