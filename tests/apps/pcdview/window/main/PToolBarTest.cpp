// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/main/PToolBar.h>

#include <apps/pcdview/window/FakeCameras.h>

#include <apps/pcdview/window/camera/PModeChooser.h>

#include <support/QtPrinters.h>

#include <QAction>

namespace {

using PToolBarTest = FakeCameras;

} // namespace

TEST_F(PToolBarTest, has_the_actions_used_most_in_their_order) {
    const PToolBar bar(actions);
    QStringList names;
    for (QAction* action : bar.actions()) {
        const QWidget* const widget = bar.widgetForAction(action);
        if (widget == &bar.modes())
            names.append(u"MODES"_qs);
        else
            names.append(action->isSeparator() ? u"-"_qs : action->objectName());
    }
    EXPECT_EQ(names.join(u' '),
              u"live MODES - snapshot record - fit actualSize fullScreen - region wholeSensor - "
              "clipped autoContrast"_qs);
}

TEST_F(PToolBarTest, stays_where_its_state_is_restored) {
    const PToolBar bar(actions);
    EXPECT_EQ(bar.objectName(), u"toolBar"_qs); // by which a window restores it
    EXPECT_FALSE(bar.isMovable());
}
