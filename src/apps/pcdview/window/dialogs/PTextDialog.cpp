// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/dialogs/PTextDialog.h>

#include <QMessageBox>

void PTextDialog::open(QWidget* parent, const QString& title, const QString& html) {
    auto* const box = new QMessageBox(QMessageBox::NoIcon, title, html, QMessageBox::Close, parent);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::RichText);
    box->open();
}
