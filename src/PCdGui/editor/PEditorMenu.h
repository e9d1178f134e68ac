// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>

class PPropertyEditor;
class QMenu;
class QWidget;

/// The context menu of an editor. The GUI thread.
class PEditorMenu {
    Q_DECLARE_TR_FUNCTIONS(PEditorMenu)

public:
    /// A new menu for a click on this part of the editor: the part's own menu (copy, paste … for a
    /// field) and "Reset to default", which is disabled, with the reason, if the property cannot
    /// take its default.
    static QMenu* create(PPropertyEditor* editor, QWidget* part);
};
