// SPDX-License-Identifier: MIT
#include <support/QtPrinters.h>

#include <QTranslator>

#include <gtest/gtest.h>

TEST(CatalogueTest, the_program_brings_its_russian_texts) {
    Q_INIT_RESOURCE(pcdview);
    QTranslator translator;
    ASSERT_TRUE(translator.load(QStringLiteral(":/pcdview/pcdview_ru.qm")));
    EXPECT_EQ(translator.language(), QStringLiteral("ru"));
    EXPECT_EQ(translator.translate("PMainWindow", "&Camera"), QStringLiteral("&Камера"));
    EXPECT_EQ(translator.translate("PDevicePanel", "Other"), QStringLiteral("Прочее"));
}
