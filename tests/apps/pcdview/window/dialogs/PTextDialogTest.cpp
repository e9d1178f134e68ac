// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/dialogs/PTextDialog.h>

#include <support/QtPrinters.h>
#include <support/WaitUntil.h>

#include <QMessageBox>
#include <QPointer>
#include <QWidget>

#include <gtest/gtest.h>

TEST(PTextDialogTest, shows_the_text_until_it_is_closed) {
    QWidget parent;
    PTextDialog::open(&parent, u"Title"_qs, u"<b>text</b>"_qs);
    const QPointer<QMessageBox> box = parent.findChild<QMessageBox*>();
    ASSERT_NE(box, nullptr);
    EXPECT_TRUE(box->isVisible());
    EXPECT_EQ(box->windowTitle(), u"Title"_qs);
    EXPECT_EQ(box->text(), u"<b>text</b>"_qs);
    EXPECT_EQ(box->textFormat(), Qt::RichText);
    box->close();
    EXPECT_TRUE(waitUntil([&] { return box.isNull(); }));
}
