// SPDX-License-Identifier: MIT
#include <PCdGui/editor/EditorBench.h>

#include <support/QtPrinters.h>

#include <QAbstractItemView>
#include <QComboBox>

namespace {

class PChoiceEditorTest : public EditorBench<FakeChoice> {
protected:
    using Sets = QList<QUuid>;

    PChoiceEditorTest()
        : EditorBench("rotate", u"Rotate"_qs, QStringList{u"0°"_qs, u"90°"_qs, u"180°"_qs}) {}

    QComboBox* box() const { return part<QComboBox>(); }
    static QUuid itemId(int place) { return FakeChoice::itemId(place); }
};

} // namespace

TEST_F(PChoiceEditorTest, shows_the_choices_and_what_the_property_has) {
    open();
    EXPECT_EQ(box()->count(), 3);
    EXPECT_EQ(box()->currentText(), u"0°"_qs);
    EXPECT_TRUE(property->sets.isEmpty());
}

TEST_F(PChoiceEditorTest, sets_what_is_chosen_with_the_keyboard) {
    open();
    editor->setFocus();
    QTest::keyClick(box(), Qt::Key_Down);
    turn();
    QTest::keyClick(box(), Qt::Key_End);
    turn();
    EXPECT_EQ(property->sets, Sets({itemId(1), itemId(2)}));
}

TEST_F(PChoiceEditorTest, sets_what_is_clicked_in_the_list) {
    open();
    box()->showPopup();
    QAbstractItemView* const list = box()->view();
    const QRect item = list->visualRect(box()->model()->index(2, 0));
    QTest::mouseMove(list->viewport(), item.center());
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, item.center());
    turn();
    EXPECT_EQ(property->sets, Sets({itemId(2)}));
}

TEST_F(PChoiceEditorTest, follows_the_device_and_sends_nothing_back) {
    open();
    deviceBecomes(itemId(2));
    turn();
    EXPECT_EQ(box()->currentText(), u"180°"_qs);
    EXPECT_TRUE(property->sets.isEmpty());
}

TEST_F(PChoiceEditorTest, follows_the_choices_and_sends_nothing) {
    open();
    deviceBecomes(itemId(1));
    property->rangeInDevice.addItem(itemId(3), u"270"_qs, QString(), "270");
    property->updateValueFromDevice();
    turn();
    EXPECT_EQ(box()->count(), 4);
    EXPECT_EQ(box()->itemText(3), u"270"_qs) << "the name, where there is no title";
    EXPECT_EQ(box()->currentText(), u"90°"_qs);
    EXPECT_TRUE(property->sets.isEmpty());
}

using PChoiceEditorRefusal = RefusingBench<PChoiceEditorTest>;

ROW_TEST(PChoiceEditorRefusal, shows_what_the_device_has) {
    QTest::keyClick(box(), Qt::Key_Down);
    turn();
    EXPECT_EQ(property->sets, Sets({itemId(1)}));
    EXPECT_EQ(box()->currentText(), u"0°"_qs);
}

ROW_TEST(PChoiceEditorRefusal, is_reported_with_the_value_that_the_device_kept) {
    const QSignalSpy refused(editor, &PPropertyEditor::refused);
    QTest::keyClick(box(), Qt::Key_Down);
    turn();
    ASSERT_EQ(refused.size(), 1);
    EXPECT_EQ(refused[0], QVariantList({u"Rotate"_qs, u"0°"_qs}));
}

ROWS_IN(Rows, PChoiceEditorRefusal, everyAnswer);

TEST_F(PChoiceEditorTest, does_not_name_the_kept_value_if_it_is_not_a_choice) {
    open();
    deviceBecomes(itemId(9));
    property->refuses = true;
    const QSignalSpy refused(editor, &PPropertyEditor::refused);
    QTest::keyClick(box(), Qt::Key_Down);
    turn();
    ASSERT_EQ(refused.size(), 1);
    EXPECT_EQ(refused[0], QVariantList({u"Rotate"_qs, QString()}));
}

TEST_F(PChoiceEditorTest, shows_no_choice_where_the_device_has_another) {
    open();
    deviceBecomes(itemId(9));
    EXPECT_EQ(box()->currentIndex(), -1);
    EXPECT_TRUE(property->sets.isEmpty());
}

TEST_F(PChoiceEditorTest, shows_no_choice_if_the_device_does_not_report_one) {
    property->failsToRead = true;
    property->setValue(itemId(1));
    open();
    EXPECT_EQ(box()->currentIndex(), -1);
}
