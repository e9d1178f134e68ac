// SPDX-License-Identifier: MIT
#include <PCdGui/editor/EditorBench.h>

#include <PCd/FakeRegister.h>
#include <support/QtPrinters.h>

#include <QContextMenuEvent>
#include <QMenu>

namespace {

/// What all editors have in common, tested with that of a number.
class PPropertyEditorTest : public EditorBench<FakeNumber> {
protected:
    using Sets = QList<int>;

    PPropertyEditorTest()
        : EditorBench("gain", u"Gain"_qs, PMinMaxRange<int>{0, 500, 1}, 100) {}

    ~PPropertyEditorTest() override { delete QApplication::activePopupWidget(); }

    PNumberField* field() const { return part<PNumberField>(); }

    QAction* resetOfMenuOver(QWidget* part) const {
        QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(2, 2),
                                part->mapToGlobal(QPoint(2, 2)));
        QApplication::sendEvent(part, &event);
        const QWidget* const menu = QApplication::activePopupWidget();
        return menu != nullptr ? menu->findChild<QAction*>(u"reset"_qs) : nullptr;
    }
};

} // namespace

TEST_F(PPropertyEditorTest, has_the_title_as_its_name_and_passes_it_on) {
    property->setDescription(u"Of the amplifier."_qs);
    open();
    EXPECT_EQ(editor->accessibleName(), u"Gain"_qs);
    EXPECT_EQ(editor->accessibleDescription(), u"Of the amplifier."_qs);
    EXPECT_EQ(field()->accessibleName(), u"Gain"_qs);
}

TEST_F(PPropertyEditorTest, shows_description_range_and_default_in_its_tool_tip) {
    property->setDescription(u"Keep it < 300."_qs);
    property->setDefaultValue(120);
    open();
    EXPECT_EQ(editor->toolTip(), u"<p>Keep it &lt; 300.<br>Range: 0 to 500<br>Default: 120</p>"_qs);
}

TEST_F(PPropertyEditorTest, emits_another_range_when_there_is_one) {
    open();
    property->rangeInDevice = {0, 50, 5};
    property->updateValueFromDevice();
    EXPECT_EQ(editor->toolTip(), u"<p>Range: 0 to 50, in steps of 5</p>"_qs);
}

TEST_F(PPropertyEditorTest, is_disabled_when_the_device_is_unlinked_and_says_why) {
    device->link();
    open();
    EXPECT_TRUE(editor->isEnabled());
    device->unlink();
    EXPECT_FALSE(editor->isEnabled());
    EXPECT_EQ(editor->toolTip(), u"The device is not connected."_qs);
}

TEST_F(PPropertyEditorTest, is_enabled_again_when_a_linked_device_reports_a_change) {
    device->link();
    open();
    device->unlink();
    device->link();
    deviceBecomes(7);
    EXPECT_TRUE(editor->isEnabled());
}

TEST_F(PPropertyEditorTest, is_enabled_again_when_shown_while_the_device_is_linked) {
    device->link();
    open();
    device->unlink();
    editor->hide();
    device->link();
    editor->show();
    EXPECT_TRUE(editor->isEnabled());
}

TEST_F(PPropertyEditorTest, is_disabled_when_the_device_is_gone_and_outlives_it) {
    open();
    FakeRegister cameras({device.get()});
    cameras.updateDevices();
    FakeDevice* const gone = device.release(); // now owned by the register
    const QPointer<FakeDevice> watched(gone);
    enter(field(), u"250"_qs);
    cameras.removeDevice(gone);
    EXPECT_FALSE(editor->isEnabled());
    turn();
    ASSERT_NE(watched, nullptr);
    EXPECT_TRUE(property->sets.isEmpty());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(watched, nullptr);
    EXPECT_EQ(editor->property(), nullptr);
}

TEST_F(PPropertyEditorTest, is_disabled_from_the_start_for_a_device_that_is_gone) {
    FakeRegister cameras({device.get()});
    cameras.updateDevices();
    cameras.removeDevice(device.release());
    open();
    EXPECT_FALSE(editor->isEnabled());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

TEST_F(PPropertyEditorTest, outlives_the_device_with_a_waiting_value_and_typing_begun) {
    open();
    enter(field(), u"250"_qs);
    typeInto(field(), u"300"_qs);
    device.reset();
    turn();
    EXPECT_FALSE(editor->isEnabled());
    EXPECT_EQ(editor->property(), nullptr);
    editor->resetToDefault();
    elsewhere->setFocus();
    turn();
    EXPECT_EQ(resetOfMenuOver(editor), nullptr);
}

TEST_F(PPropertyEditorTest, can_be_destroyed_before_the_property) {
    open();
    delete editor;
    deviceBecomes(7);
    property->rangeInDevice = {0, 50, 1};
    property->updateValueFromDevice();
    EXPECT_TRUE(property->sets.isEmpty());
}

TEST_F(PPropertyEditorTest, sends_what_waits_when_it_is_destroyed) {
    open();
    enter(field(), u"250"_qs);
    EXPECT_TRUE(property->sets.isEmpty());
    delete editor;
    EXPECT_EQ(property->sets, Sets({250}));
}

TEST_F(PPropertyEditorTest, can_be_destroyed_while_something_is_being_typed) {
    open();
    typeInto(field(), u"250"_qs);
    delete editor;
    turn();
    EXPECT_TRUE(property->sets.isEmpty());
}

TEST_F(PPropertyEditorTest, may_be_deleted_by_a_slot_of_the_set) {
    open();
    QObject::connect(property, &PDeviceProperty::valueChanged, editor, [this] { delete editor; });
    enter(field(), u"250"_qs);
    turn();
    EXPECT_EQ(property->sets, Sets({250}));
}

TEST_F(PPropertyEditorTest, resets_to_the_default_by_its_menu) {
    property->setDefaultValue(120);
    open();
    QAction* const reset = resetOfMenuOver(editor);
    ASSERT_NE(reset, nullptr);
    EXPECT_TRUE(reset->isEnabled());
    EXPECT_EQ(reset->text(), u"Reset to default (120)"_qs);
    reset->trigger();
    turn();
    EXPECT_EQ(property->sets, Sets({120}));
    EXPECT_EQ(shownText(field()), u"120"_qs);
}

TEST_F(PPropertyEditorTest, has_the_reset_also_in_the_menu_of_its_field_beside_copy_and_paste) {
    property->setDefaultValue(120);
    open();
    QAction* const reset = resetOfMenuOver(field());
    ASSERT_NE(reset, nullptr);
    EXPECT_GT(static_cast<QMenu*>(QApplication::activePopupWidget())->actions().size(), 4);
}

TEST_F(PPropertyEditorTest, does_not_reset_to_a_default_that_the_property_cannot_take) {
    property->setDefaultValue(6503);
    open();
    const QAction* const reset = resetOfMenuOver(editor);
    ASSERT_NE(reset, nullptr);
    EXPECT_FALSE(reset->isEnabled());
    EXPECT_EQ(reset->toolTip(), u"\"gain\" cannot be 6503: expected a whole number "
                                "from 0 to 500"_qs);
}

TEST_F(PPropertyEditorTest, says_if_there_is_no_default) {
    open();
    const QAction* const reset = resetOfMenuOver(editor);
    ASSERT_NE(reset, nullptr);
    EXPECT_FALSE(reset->isEnabled());
    EXPECT_EQ(reset->toolTip(), u"This setting has no default."_qs);
}
