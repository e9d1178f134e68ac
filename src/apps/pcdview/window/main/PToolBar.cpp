// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/main/PToolBar.h>

#include <apps/pcdview/window/actions/PViewActions.h>
#include <apps/pcdview/window/camera/PModeChooser.h>

PToolBar::PToolBar(const PViewActions& actions, QWidget* parent)
    : QToolBar(tr("Tool bar"), parent)
    , m_modes(new PModeChooser) {
    setObjectName(u"toolBar"_qs);
    setMovable(false);
    setIconSize({22, 22}); // for which most icons are drawn
    setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    addAction(actions.live);
    addWidget(m_modes);
    addSeparator();
    addActions({actions.snapshot, actions.record});
    addSeparator();
    addActions({actions.fit, actions.actualSize, actions.fullScreen});
    addSeparator();
    addActions({actions.region, actions.wholeSensor});
    addSeparator();
    addActions({actions.clipped, actions.autoContrast});
}

#include "moc_PToolBar.cpp"
