// SPDX-License-Identifier: MIT
#pragma once

#include <QMenuBar>

class PViewActions;
class QDockWidget;

/// The menus of the window. The GUI thread.
class PMenuBar : public QMenuBar {
    Q_OBJECT

public:
    /// Puts the actions into menus, with a switch for each of the docks.
    PMenuBar(const PViewActions& actions, const QList<QDockWidget*>& docks,
             QWidget* parent = nullptr);

private:
    void addFileMenu(const PViewActions& actions);
    void addCameraMenu(const PViewActions& actions);
    void addViewMenu(const PViewActions& actions, const QList<QDockWidget*>& docks);
    void addHelpMenu(const PViewActions& actions);
    static void addThemes(QMenu* menu);
};
