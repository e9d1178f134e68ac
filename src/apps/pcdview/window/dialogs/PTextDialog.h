// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QWidget;

/// A text with a button to close it. The GUI thread.
class PTextDialog {
public:
    /// Opens the dialog over `parent` and returns at once; it deletes itself when it is closed.
    static void open(QWidget* parent, const QString& title, const QString& html);
};
