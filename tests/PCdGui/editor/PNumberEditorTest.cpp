// SPDX-License-Identifier: MIT
#include <PCdGui/editor/EditorBench.h>

#include <support/QtPrinters.h>
#include <support/WaitUntil.h>

#include <QStyle>
#include <QTest>

namespace {

class PNumberEditorTest : public EditorBench<FakeNumber> {
protected:
    using Sets = QList<int>;

    PNumberEditorTest()
        : EditorBench("gain", u"Gain"_qs, PMinMaxRange<int>{0, 500, 1}, 100) {}

    PNumberField* field() const { return part<PNumberField>(); }
    PRangeSlider* slider() const { return part<PRangeSlider>(); }
    /// The place of the slider's handle.
    QPoint handle() const {
        const int length =
            slider()->style()->pixelMetric(QStyle::PM_SliderLength, nullptr, slider());
        const int left =
            QStyle::sliderPositionFromValue(slider()->minimum(), slider()->maximum(),
                                            slider()->sliderPosition(), slider()->width() - length);
        return {left + length / 2, slider()->height() / 2};
    }

    void makeItAnExposureTime() {
        property->rangeInDevice = {10, 50000000, 1};
        property->inDevice = 12500;
        property->setType(PCD::DevicePropertyType::Duration);
        property->setUnit(ValueUnits::Microsecond);
        property->setUnitsType(ValueUnitType::Time);
        property->updateValueFromDevice();
    }
};

} // namespace

TEST_F(PNumberEditorTest, shows_what_the_property_has) {
    open();
    EXPECT_EQ(shownText(field()), u"100"_qs);
    EXPECT_EQ(slider()->value(), 100);
    EXPECT_TRUE(property->sets.isEmpty());
}

TEST_F(PNumberEditorTest, sets_what_is_entered_once) {
    open();
    enter(field(), u"250"_qs);
    elsewhere->setFocus();
    turn();
    EXPECT_EQ(property->sets, Sets({250}));
}

TEST_F(PNumberEditorTest, sets_what_is_typed_when_the_focus_leaves) {
    open();
    typeInto(field(), u"250"_qs);
    turn();
    EXPECT_TRUE(property->sets.isEmpty());
    elsewhere->setFocus();
    turn();
    EXPECT_EQ(property->sets, Sets({250}));
}

TEST_F(PNumberEditorTest, sets_nothing_when_the_value_shown_is_entered_again) {
    open();
    enter(field(), u"100"_qs);
    turn();
    EXPECT_TRUE(property->sets.isEmpty());
}

TEST_F(PNumberEditorTest, follows_the_device_and_sends_nothing_back) {
    open();
    deviceBecomes(333);
    turn();
    EXPECT_EQ(shownText(field()), u"333"_qs);
    EXPECT_EQ(slider()->value(), 333);
    EXPECT_TRUE(property->sets.isEmpty());
}

TEST_F(PNumberEditorTest, follows_the_range_and_sends_nothing) {
    open();
    property->rangeInDevice = {0, 50, 1};
    property->updateValueFromDevice();
    turn();
    EXPECT_EQ(slider()->maximum(), 50);
    EXPECT_EQ(shownText(field()), u"100"_qs);
    EXPECT_TRUE(property->sets.isEmpty());
}

TEST_F(PNumberEditorTest, keeps_what_is_being_typed_when_the_range_changes_and_brings_it_inside) {
    open();
    typeInto(field(), u"400"_qs);
    property->rangeInDevice = {0, 300, 1};
    property->updateValueFromDevice();
    EXPECT_EQ(shownText(field()), u"400"_qs);
    QTest::keyClick(field(), Qt::Key_Return);
    turn();
    EXPECT_EQ(property->sets, Sets({300}));
}

using PNumberEditorRefusal = RefusingBench<PNumberEditorTest>;

ROW_TEST(PNumberEditorRefusal, shows_what_the_device_has) {
    enter(field(), u"250"_qs);
    turn();
    EXPECT_EQ(property->sets, Sets({250}));
    EXPECT_EQ(shownText(field()), u"100"_qs);
    EXPECT_EQ(slider()->value(), 100);
}

ROW_TEST(PNumberEditorRefusal, is_reported_with_the_value_that_the_device_kept) {
    const QSignalSpy refused(editor, &PPropertyEditor::refused);
    enter(field(), u"250"_qs);
    turn();
    ASSERT_EQ(refused.size(), 1);
    EXPECT_EQ(refused[0], QVariantList({u"Gain"_qs, u"100"_qs}));
}

ROWS_IN(Rows, PNumberEditorRefusal, everyAnswer);

TEST_F(PNumberEditorTest, shows_a_value_outside_the_range_as_it_is) {
    property->inDevice = 6503;
    property->updateValueFromDevice();
    open();
    EXPECT_EQ(shownText(field()), u"6503"_qs);
    field()->setFocus();
    elsewhere->setFocus();
    turn();
    EXPECT_TRUE(property->sets.isEmpty());
}

TEST_F(PNumberEditorTest, sets_only_the_last_of_a_turn_while_dragged) {
    open();
    slider()->setSliderDown(true);
    for (int position = 101; position <= 200; ++position)
        slider()->setSliderPosition(position);
    EXPECT_TRUE(property->sets.isEmpty());
    turn();
    EXPECT_EQ(property->sets, Sets({200}));
    slider()->setSliderPosition(210);
    slider()->setSliderDown(false);
    turn();
    EXPECT_EQ(property->sets, Sets({200, 210}));
}

TEST_F(PNumberEditorTest, sets_nothing_when_the_slider_comes_back_within_a_turn) {
    open();
    slider()->setSliderDown(true);
    slider()->setSliderPosition(200);
    slider()->setSliderPosition(100);
    slider()->setSliderDown(false);
    turn();
    EXPECT_TRUE(property->sets.isEmpty());
    EXPECT_EQ(shownText(field()), u"100"_qs);
}

TEST_F(PNumberEditorTest, returns_the_handle_to_the_real_value_after_a_refused_drag) {
    property->refuses = true;
    open();
    slider()->setSliderDown(true);
    slider()->setSliderPosition(200);
    turn();
    EXPECT_EQ(slider()->value(), 200);
    EXPECT_EQ(shownText(field()), u"100"_qs);
    slider()->setSliderDown(false);
    turn();
    EXPECT_EQ(slider()->value(), 100);
    EXPECT_EQ(property->sets, Sets({200}));
}

TEST_F(PNumberEditorTest, is_not_moved_by_the_device_while_a_value_waits_to_be_set) {
    open();
    enter(field(), u"250"_qs);
    deviceBecomes(101);
    EXPECT_EQ(shownText(field()), u"250"_qs);
    turn();
    EXPECT_EQ(property->sets, Sets({250}));
    EXPECT_EQ(shownText(field()), u"250"_qs);
}

TEST_F(PNumberEditorTest, works_with_the_keyboard_alone) {
    open();
    elsewhere->setFocus();
    QTest::keyClick(elsewhere, Qt::Key_Backtab);
    ASSERT_EQ(QApplication::focusWidget(), field());
    QTest::keyClick(field(), Qt::Key_Up);
    turn();
    QTest::keyClick(field(), Qt::Key_PageDown);
    turn();
    EXPECT_EQ(property->sets, Sets({101, 91}));
}

TEST_F(PNumberEditorTest, shows_a_time_in_the_unit_that_suits_it) {
    makeItAnExposureTime();
    open();
    EXPECT_EQ(shownText(field()), u"12.5 ms"_qs);
    deviceBecomes(150);
    EXPECT_EQ(shownText(field()), u"150 µs"_qs);
    deviceBecomes(3000000);
    EXPECT_EQ(shownText(field()), u"3 s"_qs);
}

TEST_F(PNumberEditorTest, takes_a_time_in_any_unit) {
    makeItAnExposureTime();
    open();
    for (const char* text : {"3 s", "150 us", "12.5 ms", "20"}) {
        enter(field(), QString::fromLatin1(text));
        turn();
    }
    EXPECT_EQ(property->sets, Sets({3000000, 150, 12500, 20000}));
}

TEST_F(PNumberEditorTest, reaches_both_ends_of_a_time_exactly_by_the_slider) {
    makeItAnExposureTime();
    open();
    slider()->setFocus();
    QTest::keyClick(slider(), Qt::Key_Home);
    turn();
    QTest::keyClick(slider(), Qt::Key_End);
    turn();
    EXPECT_EQ(property->sets, Sets({10, 50000000}));
    EXPECT_EQ(shownText(field()), u"50 s"_qs);
}

TEST(PNumberEditor, has_only_a_field_where_there_is_no_range) {
    FakeNumber property("n", u"N"_qs, {0, 10, 1}, 5); // no device has taken it: no range known
    const std::unique_ptr<QWidget> editor(PCdGui::createEditor(&property));
    editor->show();
    EXPECT_FALSE(editor->findChild<PRangeSlider*>()->isVisible());
    enter(editor->findChild<PNumberField*>(), u"-70000"_qs);
    QCoreApplication::processEvents();
    EXPECT_EQ(property.sets, QList<int>({-70000}));
}

TEST_F(PNumberEditorTest, shows_no_number_if_the_device_does_not_report_one) {
    property->failsToRead = true;
    property->setValue(7); // cannot be read back
    property->sets.clear();
    open();
    EXPECT_EQ(shownText(field()), QString());
    EXPECT_FALSE(slider()->isEnabled());
    EXPECT_TRUE(editor->toolTip().contains(u"The camera did not report this setting."_qs));
    enter(field(), u"250"_qs);
    turn();
    EXPECT_EQ(property->sets, Sets({250}));
}

TEST_F(PNumberEditorTest, reads_an_unreported_number_again_when_it_appears) {
    property->failsToRead = true;
    property->setValue(7);
    open();
    property->failsToRead = false;
    window.hide();
    ASSERT_TRUE(showActive(&window));
    EXPECT_EQ(shownText(field()), u"7"_qs);
    EXPECT_TRUE(slider()->isEnabled());
    EXPECT_FALSE(editor->toolTip().contains(u"did not report"_qs));
}

TEST_F(PNumberEditorTest, reads_an_unreported_number_again_while_it_is_shown) {
    property->failsToRead = true;
    open();
    property->setValue(7);
    EXPECT_EQ(shownText(field()), QString());
    property->failsToRead = false;
    EXPECT_TRUE(waitUntil([this] { return shownText(field()) == u"7"_qs; }));
    EXPECT_TRUE(slider()->isEnabled());
}

TEST_F(PNumberEditorTest, goes_on_reading_until_the_device_reports_the_number) {
    property->failsToRead = true;
    open();
    property->setValue(7);
    const int before = property->reads;
    ASSERT_TRUE(waitUntil([&] { return property->reads >= before + 2; }));
    EXPECT_EQ(shownText(field()), QString());
    property->failsToRead = false;
    EXPECT_TRUE(waitUntil([this] { return shownText(field()) == u"7"_qs; }));
}

TEST_F(PNumberEditorTest, keeps_the_slider_that_is_being_dragged_while_the_number_is_unread) {
    open();
    property->failsToRead = true;
    QTest::mousePress(slider(), Qt::LeftButton, {}, handle());
    QTest::mouseMove(slider(), handle() + QPoint(15, 0));
    turn();
    ASSERT_EQ(property->sets.size(), 1); // which cannot be read back
    EXPECT_EQ(shownText(field()), QString());
    EXPECT_TRUE(slider()->isEnabled());
    QTest::mouseMove(slider(), handle() + QPoint(15, 0));
    turn();
    EXPECT_EQ(property->sets.size(), 2);
    QTest::mouseRelease(slider(), Qt::LeftButton, {}, handle());
    turn();
    EXPECT_FALSE(slider()->isEnabled());
    property->failsToRead = false;
    property->updateValueFromDevice();
    EXPECT_TRUE(slider()->isEnabled());
    EXPECT_EQ(shownText(field()), QString::number(property->sets.last()));
}

TEST_F(PNumberEditorTest, may_be_deleted_by_a_slot_when_an_unreported_number_arrives) {
    property->failsToRead = true;
    open();
    property->setValue(7);
    property->failsToRead = false;
    const QPointer<QWidget> watched(editor);
    QObject::connect(property, &PDeviceProperty::valueChanged, &window, [&] { delete watched; });
    EXPECT_TRUE(waitUntil([&] { return watched.isNull(); }));
}
