// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/main/PToolBar.h>

#include <apps/pcdview/window/FakeCameras.h>

#include <apps/pcdview/window/camera/PModeChooser.h>

#include <support/QtPrinters.h>

#include <QAction>
#include <QIcon>
#include <QImage>

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

TEST_F(PToolBarTest, has_icons_with_texts_for_all_actions_whatever_the_theme_has) {
    const PToolBar bar(actions);
    EXPECT_EQ(bar.toolButtonStyle(), Qt::ToolButtonTextUnderIcon);
    const QString theme = QIcon::themeName();
    for (const QString& name : {u"no such theme"_qs, u"Adwaita"_qs}) {
        QIcon::setThemeName(name);
        for (const QAction* action : window.actions()) {
            const QIcon icon = action->icon();
            EXPECT_FALSE(icon.isNull()) << action->objectName().toStdString();
            QImage empty(22, 22, QImage::Format_ARGB32_Premultiplied);
            empty.fill(Qt::transparent);
            EXPECT_NE(icon.pixmap({22, 22}, 1).toImage(), empty)
                << action->objectName().toStdString();
        }
    }
    QIcon::setThemeName(theme);
}

TEST_F(PToolBarTest, stays_where_its_state_is_restored) {
    const PToolBar bar(actions);
    EXPECT_EQ(bar.objectName(), u"toolBar"_qs); // by which a window restores it
    EXPECT_FALSE(bar.isMovable());
}
