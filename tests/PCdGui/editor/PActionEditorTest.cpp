// SPDX-License-Identifier: MIT
#include <PCdGui/editor/EditorBench.h>

#include <support/QtPrinters.h>

#include <QContextMenuEvent>
#include <QMenu>
#include <QPushButton>

namespace {

class PActionEditorTest : public EditorBench<FakeAction> {
protected:
    PActionEditorTest()
        : EditorBench("awbonce", u"Black & white"_qs) {}

    QPushButton* button() const { return part<QPushButton>(); }
};

} // namespace

TEST_F(PActionEditorTest, shows_the_title_on_the_button) {
    open();
    EXPECT_TRUE(editor->showsTitle());
    EXPECT_EQ(button()->text(), u"Black && white"_qs);
    EXPECT_EQ(button()->accessibleName(), u"Black & white"_qs);
}

TEST_F(PActionEditorTest, runs_once_per_click) {
    open();
    EXPECT_EQ(property->runs, 0);
    QTest::mouseClick(button(), Qt::LeftButton);
    turn();
    EXPECT_EQ(property->runs, 1);
    QTest::mouseClick(button(), Qt::LeftButton);
    QTest::mouseClick(button(), Qt::LeftButton);
    turn();
    EXPECT_EQ(property->runs, 3);
}

TEST_F(PActionEditorTest, runs_by_the_space_key) {
    open();
    editor->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    EXPECT_EQ(property->runs, 1);
}

TEST_F(PActionEditorTest, runs_nothing_when_the_device_changes) {
    open();
    property->updateValueFromDevice(true);
    turn();
    EXPECT_EQ(property->runs, 0);
}

TEST_F(PActionEditorTest, has_no_menu_because_there_is_nothing_to_reset) {
    open();
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(2, 2), editor->mapToGlobal(QPoint()));
    QApplication::sendEvent(button(), &event);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}
