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
    ASSERT_TRUE(translator.load(u":/pcdview/pcdview_ru.qm"_qs));
    EXPECT_EQ(translator.language(), u"ru"_qs);
    EXPECT_EQ(translator.translate("PMenuBar", "&Camera"), u"&Камера"_qs);
    EXPECT_EQ(translator.translate("PDevicePanel", "Other"), u"Прочее"_qs);
}

TEST_F(CatalogueTest, reasons_that_come_from_below_the_window_are_in_it) {
    Q_INIT_RESOURCE(pcdview);
    QTranslator translator;
    ASSERT_TRUE(translator.load(u":/pcdview/pcdview_ru.qm"_qs));
    QCoreApplication::installTranslator(&translator);
    writeFile(path(u"file"_qs), "here already");
    EXPECT_EQ(PPictureFile::prepareFolder(path(u"file/picture.png"_qs)).reason(),
              u"не удалось сохранить «%1»: не удалось создать папку «%2»"_qs.arg(
                  path(u"file/picture.png"_qs), path(u"file"_qs)));
}
