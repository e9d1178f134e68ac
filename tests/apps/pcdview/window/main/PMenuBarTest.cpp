// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/main/PMenuBar.h>

#include <apps/pcdview/window/FakeCameras.h>

#include <apps/pcdview/options/PTheme.h>

#include <support/QtPrinters.h>

#include <QAction>
#include <QDockWidget>

namespace {

class PMenuBarTest : public FakeCameras {
protected:
    /// The menu with this title.
    QMenu* menu(const QString& title) const { return find(bar.actions(), title); }
    static QMenu* find(const QList<QAction*>& entries, const QString& title) {
        for (QAction* entry : entries) {
            if (QString(entry->text()).remove(u'&') == title)
                return entry->menu();
        }
        return nullptr;
    }
    /// The names of the actions; "-" for a separator.
    static QStringList names(const QMenu& menu) {
        QStringList names;
        for (const QAction* action : menu.actions())
            names.append(action->isSeparator() ? u"-"_qs : action->objectName());
        return names;
    }

    const PMenuBar bar{actions, panels.docks()};
};

} // namespace

TEST_F(PMenuBarTest, has_the_file_actions_in_their_order) {
    const QMenu* const file = menu(u"File"_qs);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(names(*file).join(u' '),
              u"snapshot savePicture record captureFiles - loadProfile saveProfile - quit"_qs);
}

TEST_F(PMenuBarTest, has_the_camera_actions_in_their_order) {
    const QMenu* const camera = menu(u"Camera"_qs);
    ASSERT_NE(camera, nullptr);
    EXPECT_EQ(names(*camera).join(u' '),
              u"live region wholeSensor pixelSize - search closeCamera"_qs);
}

TEST_F(PMenuBarTest, shows_icons_but_for_switches_their_check_boxes) {
    for (const QAction* action : window.actions())
        EXPECT_NE(action->isIconVisibleInMenu(), action->isCheckable())
            << action->objectName().toStdString();
}

TEST_F(PMenuBarTest, has_every_action_of_the_window) {
    QList<QAction*> there;
    for (const QMenu* menu : bar.findChildren<QMenu*>())
        there += menu->actions();
    for (QAction* action : window.actions())
        EXPECT_TRUE(there.contains(action)) << action->objectName().toStdString();
}

TEST_F(PMenuBarTest, shows_and_hides_the_docks) {
    const QMenu* const view = menu(u"View"_qs);
    ASSERT_NE(view, nullptr);
    const QMenu* const docks = find(view->actions(), u"Panels"_qs);
    ASSERT_NE(docks, nullptr);
    ASSERT_EQ(docks->actions().size(), panels.docks().size());
    window.show();
    QDockWidget* const dock = panels.docks().first();
    ASSERT_TRUE(dock->isVisible());
    docks->actions().first()->trigger();
    EXPECT_FALSE(dock->isVisible());
}

TEST_F(PMenuBarTest, remembers_the_theme_that_is_chosen) {
    const QMenu* const view = menu(u"View"_qs);
    ASSERT_NE(view, nullptr);
    const QMenu* const themes = find(view->actions(), u"Colours"_qs);
    ASSERT_NE(themes, nullptr);
    ASSERT_EQ(themes->actions().size(), 3);
    EXPECT_TRUE(themes->actions().first()->isChecked());
    themes->actions().last()->trigger();
    EXPECT_EQ(PTheme::chosen(), PTheme::Kind::Dark);
    EXPECT_FALSE(themes->actions().first()->isChecked());
    PTheme::apply(PTheme::Kind::System); // for the following tests
}
