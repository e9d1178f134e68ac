// SPDX-License-Identifier: MIT
#include <PCdGui/editor/EditorBench.h>

#include <QCheckBox>

namespace {

class PSwitchEditorTest : public EditorBench<FakeSwitch> {
protected:
    using Sets = QList<bool>;

    PSwitchEditorTest()
        : EditorBench("negative") {}

    QCheckBox* box() const { return part<QCheckBox>(); }
};

} // namespace

TEST_F(PSwitchEditorTest, shows_what_the_property_has) {
    property->inDevice = true;
    property->updateValueFromDevice();
    open();
    EXPECT_TRUE(box()->isChecked());
    EXPECT_TRUE(property->sets.isEmpty());
}

TEST_F(PSwitchEditorTest, sets_once_per_click) {
    open();
    box()->click();
    turn();
    EXPECT_EQ(property->sets, Sets({true}));
    box()->click();
    turn();
    EXPECT_EQ(property->sets, Sets({true, false}));
}

TEST_F(PSwitchEditorTest, works_with_the_space_key) {
    open();
    editor->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    turn();
    EXPECT_EQ(property->sets, Sets({true}));
}

TEST_F(PSwitchEditorTest, follows_the_device_and_sends_nothing_back) {
    open();
    deviceBecomes(true);
    turn();
    EXPECT_TRUE(box()->isChecked());
    EXPECT_TRUE(property->sets.isEmpty());
}

using PSwitchEditorRefusal = RefusingBench<PSwitchEditorTest>;

ROW_TEST(PSwitchEditorRefusal, shows_what_the_device_has) {
    box()->click();
    turn();
    EXPECT_EQ(property->sets, Sets({true}));
    EXPECT_FALSE(box()->isChecked());
}

ROW_TEST(PSwitchEditorRefusal, is_reported_with_the_value_that_the_device_kept) {
    const QSignalSpy refused(editor, &PPropertyEditor::refused);
    box()->click();
    turn();
    ASSERT_EQ(refused.size(), 1);
    EXPECT_EQ(refused[0], QVariantList({u"Negative"_qs, u"off"_qs}));
}

ROWS_IN(Rows, PSwitchEditorRefusal, everyAnswer);

TEST_F(PSwitchEditorTest, is_switched_by_a_touch_of_its_title) {
    open();
    editor->touch();
    turn();
    EXPECT_EQ(property->sets, Sets({true}));
}

TEST_F(PSwitchEditorTest, is_neither_on_nor_off_if_the_device_does_not_report_it) {
    property->failsToRead = true;
    property->setValue(true);
    property->sets.clear();
    open();
    EXPECT_EQ(box()->checkState(), Qt::PartiallyChecked);
    property->failsToRead = false;
    box()->click();
    turn();
    EXPECT_EQ(property->sets, Sets({true}));
    EXPECT_EQ(box()->checkState(), Qt::Checked);
    box()->click();
    EXPECT_EQ(box()->checkState(), Qt::Unchecked);
}
