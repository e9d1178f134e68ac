// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/main/PMenuBar.h>

#include <apps/pcdview/options/PTheme.h>
#include <apps/pcdview/window/actions/PViewActions.h>

#include <QAction>
#include <QActionGroup>
#include <QDockWidget>

PMenuBar::PMenuBar(const PViewActions& actions, const QList<QDockWidget*>& docks, QWidget* parent)
    : QMenuBar(parent) {
    addFileMenu(actions);
    addCameraMenu(actions);
    addViewMenu(actions, docks);
    addHelpMenu(actions);
}

void PMenuBar::addFileMenu(const PViewActions& actions) {
    QMenu* const menu = addMenu(tr("&File"));
    menu->addActions({actions.snapshot, actions.savePicture, actions.record, actions.captureFiles});
    menu->addSeparator();
    menu->addActions({actions.loadProfile, actions.saveProfile});
    menu->addSeparator();
    menu->addAction(actions.quit);
}

void PMenuBar::addCameraMenu(const PViewActions& actions) {
    QMenu* const menu = addMenu(tr("&Camera"));
    menu->addActions({actions.live, actions.region, actions.wholeSensor, actions.pixelSize});
    menu->addSeparator();
    menu->addActions({actions.search, actions.closeCamera});
}

void PMenuBar::addViewMenu(const PViewActions& actions, const QList<QDockWidget*>& docks) {
    QMenu* const menu = addMenu(tr("&View"));
    menu->addActions(
        {actions.fit, actions.actualSize, actions.zoomIn, actions.zoomOut, actions.fullScreen});
    menu->addSeparator();
    menu->addActions({actions.clipped, actions.autoContrast});
    menu->addSeparator();
    QMenu* const panels = menu->addMenu(tr("&Panels"));
    for (QDockWidget* dock : docks)
        panels->addAction(dock->toggleViewAction());
    addThemes(menu->addMenu(tr("&Colours")));
}

void PMenuBar::addHelpMenu(const PViewActions& actions) {
    addMenu(tr("&Help"))->addActions({actions.help, actions.about});
}

void PMenuBar::addThemes(QMenu* menu) {
    const QHash<PTheme::Kind, QString> titles{{PTheme::Kind::System, tr("Same as &system")},
                                              {PTheme::Kind::Light, tr("&Light")},
                                              {PTheme::Kind::Dark, tr("&Dark")}};
    auto* const group = new QActionGroup(menu);
    for (PTheme::Kind kind : PTheme::all()) {
        QAction* const action = menu->addAction(titles[kind]);
        action->setCheckable(true);
        action->setChecked(kind == PTheme::chosen());
        group->addAction(action);
        connect(action, &QAction::triggered, menu, [kind] { PTheme::choose(kind); });
    }
}

#include "moc_PMenuBar.cpp"
