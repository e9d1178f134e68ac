// SPDX-License-Identifier: MIT
#include <PCdGui/PCdGui.h>

#include <PCdGui/TypedProperties.h>
#include <PCdGui/editor/PActionEditor.h>
#include <PCdGui/editor/PChoiceEditor.h>
#include <PCdGui/editor/PNumberEditor.h>
#include <PCdGui/editor/PRegionEditor.h>
#include <PCdGui/editor/PSwitchEditor.h>

#include <support/QtPrinters.h>

#include <QLabel>

#include <gtest/gtest.h>

#include <memory>

namespace {

class PCdGuiTest : public testing::Test {
protected:
    PCdGuiTest() { PCdGui::install(); }

    template <typename Editor>
    static bool makes(PDeviceProperty* property) {
        const std::unique_ptr<QWidget> widget(property->createWidget());
        return qobject_cast<Editor*>(widget.get()) != nullptr && widget->parent() == nullptr;
    }
};

} // namespace

TEST_F(PCdGuiTest, makes_a_check_box_for_a_switch) {
    FakeSwitch property("negative");
    EXPECT_TRUE(makes<PSwitchEditor>(&property));
}

TEST_F(PCdGuiTest, makes_a_slider_with_a_field_for_a_number_or_a_time) {
    FakeNumber property("gain", u"Gain"_qs, {0, 10, 1}, 5);
    EXPECT_TRUE(makes<PNumberEditor>(&property));
    property.setType(PCD::DevicePropertyType::Duration);
    EXPECT_TRUE(makes<PNumberEditor>(&property));
}

TEST_F(PCdGuiTest, makes_a_combo_box_for_a_choice) {
    FakeChoice property("rotate", u"Rotate"_qs, {u"0°"_qs});
    EXPECT_TRUE(makes<PChoiceEditor>(&property));
}

TEST_F(PCdGuiTest, makes_a_button_for_an_action) {
    FakeAction property("awbonce", u"Auto whitebalance"_qs);
    EXPECT_TRUE(makes<PActionEditor>(&property));
}

TEST_F(PCdGuiTest, makes_four_fields_for_a_region) {
    FakeRegion property("roi");
    EXPECT_TRUE(makes<PRegionEditor>(&property));
}

TEST_F(PCdGuiTest, makes_a_label_for_a_kind_that_should_bring_its_own_panel_but_does_not) {
    FakeSwitch property("tec", u"Cooler <1>"_qs);
    property.setType(PCD::DevicePropertyType::Custom);
    const std::unique_ptr<QWidget> widget(property.createWidget());
    const auto* const label = qobject_cast<QLabel*>(widget.get());
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(label->text(), u"Cooler <1>"_qs);
}
