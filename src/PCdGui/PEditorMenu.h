// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>

class PPropertyEditor;
class QMenu;
class QWidget;

/// The menu that a right click on an editor opens. The GUI thread.
class PEditorMenu {
    Q_DECLARE_TR_FUNCTIONS(PEditorMenu)

public:
    /// A new menu for a click on that part of the editor: what the part itself offers (a field:
    /// copy, paste …), and "Reset to default", which is disabled, with the reason, where the
    /// property cannot take its default.
    static QMenu* create(PPropertyEditor* editor, QWidget* part);
};
