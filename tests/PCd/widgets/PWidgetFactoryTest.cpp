// SPDX-License-Identifier: MIT
#include <PCd/property/PWidgetFactory.h>

#include <PCd/FakeDevice.h>
#include <PCd/FakeProperty.h>

#include <support/QtPrinters.h>

#include <QLabel>
#include <QLineEdit>

#include <gtest/gtest.h>

namespace {

class PWidgetFactoryTest : public testing::Test {
protected:
    ~PWidgetFactoryTest() override {
        PWidgetFactory::setPropertyEditor({});
        PWidgetFactory::setDevicePanel({});
    }

    FakeProperty property{"gain"};
    FakeDevice device;
};

} // namespace

TEST_F(PWidgetFactoryTest, makes_a_label_with_the_title_where_no_editor_is_installed) {
    const std::unique_ptr<QWidget> widget(property.createWidget());
    const auto* const label = qobject_cast<QLabel*>(widget.get());
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(label->text(), u"Title of gain"_qs);
    EXPECT_EQ(label->parent(), nullptr);
}

TEST_F(PWidgetFactoryTest, makes_the_editor_that_is_installed) {
    PDeviceProperty* given = nullptr;
    PWidgetFactory::setPropertyEditor([&](PDeviceProperty* p) {
        given = p;
        return new QLineEdit(p->title());
    });
    const std::unique_ptr<QWidget> widget(property.createWidget());
    EXPECT_NE(qobject_cast<QLineEdit*>(widget.get()), nullptr);
    EXPECT_EQ(given, &property);
}

TEST_F(PWidgetFactoryTest, makes_labels_again_when_the_editor_is_taken_away) {
    PWidgetFactory::setPropertyEditor([](PDeviceProperty*) { return new QLineEdit; });
    PWidgetFactory::setPropertyEditor({});
    const std::unique_ptr<QWidget> widget(property.createWidget());
    EXPECT_NE(qobject_cast<QLabel*>(widget.get()), nullptr);
}

TEST_F(PWidgetFactoryTest, makes_no_panel_of_a_device_where_none_is_installed) {
    QWidget parent;
    EXPECT_EQ(device.createPropertiesWidget(&parent), nullptr);
}

TEST_F(PWidgetFactoryTest, makes_the_panel_that_is_installed_inside_the_parent) {
    QWidget parent;
    PDevice* given = nullptr;
    PWidgetFactory::setDevicePanel([&](PDevice* d, QWidget* inside) {
        given = d;
        return new QLineEdit(inside);
    });
    const QWidget* const panel = device.createPropertiesWidget(&parent);
    ASSERT_NE(panel, nullptr);
    EXPECT_EQ(panel->parent(), &parent);
    EXPECT_EQ(given, &device);
}
