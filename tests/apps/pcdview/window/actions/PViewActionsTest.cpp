// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/actions/PViewActions.h>

#include <support/QtPrinters.h>

#include <QAction>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMainWindow>
#include <QSet>

#include <gtest/gtest.h>

namespace {

class PViewActionsTest : public testing::Test {
protected:
    QMainWindow window;
    const PViewActions& actions = *new PViewActions(&window); // the window's
};

/// Whether a text field uses this key itself, so that no shortcut has it while the field is edited.
bool isUsedByFields(const QKeySequence& key) {
    // On the systems with X11 or Wayland also these, which the tests' platform does not have.
    static const QSet<QKeySequence> ofTheSystem{
        Qt::CTRL | Qt::Key_A, Qt::CTRL | Qt::Key_E, Qt::CTRL | Qt::Key_U,
        Qt::CTRL | Qt::SHIFT | Qt::Key_A, Qt::CTRL | Qt::SHIFT | Qt::Key_E};
    QLineEdit field;
    QKeyEvent event(QEvent::ShortcutOverride, key[0].key(), key[0].keyboardModifiers());
    event.ignore();
    QCoreApplication::sendEvent(&field, &event);
    return event.isAccepted() || ofTheSystem.contains(key);
}

} // namespace

TEST_F(PViewActionsTest, have_keys_that_work_while_a_number_is_edited) {
    ASSERT_TRUE(isUsedByFields(Qt::CTRL | Qt::Key_C));
    for (const QAction* action : window.actions()) {
        const QKeySequence key = action->shortcut();
        EXPECT_FALSE(!key.isEmpty() && isUsedByFields(key)) << action->objectName().toStdString();
    }
}

TEST_F(PViewActionsTest, have_a_key_of_their_own_each) {
    QSet<QKeySequence> used;
    for (const QAction* action : window.actions()) {
        for (const QKeySequence& key : action->shortcuts()) {
            EXPECT_FALSE(used.contains(key)) << action->objectName().toStdString();
            used.insert(key);
        }
    }
}
