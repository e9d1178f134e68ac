// SPDX-License-Identifier: MIT
// The forms of the panels, whose names and positions are used by style sheets and scripts of hosts.
#include <PTDevice/panels/PanelFixture.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <QBoxLayout>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QStackedWidget>

#include <array>

namespace {

using Place = std::array<int, 4>;

/// Row, column and spans of an item; in a line of items, the column is its index.
Place placeIn(QLayout* layout, int index) {
    Place place{0, index, 1, 1};
    if (auto* const grid = qobject_cast<QGridLayout*>(layout)) {
        grid->getItemPosition(index, &place[0], &place[1], &place[2], &place[3]);
    } else if (auto* const form = qobject_cast<QFormLayout*>(layout)) {
        QFormLayout::ItemRole role = QFormLayout::LabelRole;
        form->getItemPosition(index, &place[0], &role);
        place[1] = role;
    }
    return place;
}

QString itemName(const QLayoutItem* item) {
    QLayoutItem* const mutableItem = const_cast<QLayoutItem*>(item);
    if (const QWidget* const widget = mutableItem->widget())
        return widget->objectName();
    const QLayout* const layout = mutableItem->layout();
    return layout != nullptr ? layout->objectName() : QString();
}

/// The place of the object with this name; nothing if there is none.
std::optional<Place> findPlace(QLayout* layout, const QString& name) {
    for (int index = 0; index < layout->count(); ++index) {
        if (itemName(layout->itemAt(index)) == name)
            return placeIn(layout, index);
    }
    return std::nullopt;
}

struct FormRow {
    const char* property;
    const char* layout;
    Place place;
    const char* object;
    const char* type;
    const char* text; ///< null: it has none
};

class PanelForm : public PanelFixture, public WithRow<FormRow> {
public:
    static std::string toRowName(const FormRow& row) {
        return std::string(row.property) + '_' + row.object;
    }
};

} // namespace

ROW_TEST(PanelForm, has_the_object_in_its_place_with_its_text) {
    const FormRow& row = GetParam();
    const auto panel = newPanel(row.property);
    auto* const layout = panel->findChild<QLayout*>(QString::fromLatin1(row.layout));
    ASSERT_NE(layout, nullptr);
    EXPECT_EQ(findPlace(layout, QString::fromLatin1(row.object)), row.place);
    const auto* const object = panel->findChild<QObject*>(QString::fromLatin1(row.object));
    ASSERT_NE(object, nullptr);
    EXPECT_STREQ(object->metaObject()->className(), row.type);
    if (row.text != nullptr) {
        EXPECT_EQ(object->property("text").toString(), QString::fromUtf8(row.text));
    }
}

// clang-format off
ROWS(Rows, PanelForm,
    FormRow{"extexposure", "gridLayout", {0, 0, 1, 1}, "horizontalLayout", "QHBoxLayout", nullptr},
    FormRow{"extexposure", "horizontalLayout", {0, 0, 1, 1}, "pbVideo", "QPushButton", "VIDEO"},
    FormRow{"extexposure", "horizontalLayout", {0, 1, 1, 1}, "pbTrigger", "QPushButton", "TRIGGER"},
    FormRow{"extexposure", "gridLayout", {1, 0, 1, 1}, "stackedWidget", "QStackedWidget", nullptr},
    FormRow{"extexposure", "gridLayout_2", {0, 0, 1, 2}, "cbAutoExposure", "QCheckBox", "Auto exposure"},
    FormRow{"extexposure", "gridLayout_2", {1, 0, 1, 1}, "label", "QLabel", "Exposure target"},
    FormRow{"extexposure", "gridLayout_2", {2, 0, 1, 1}, "exposureTarget", "PRangeWidget", nullptr},
    FormRow{"extexposure", "gridLayout_2", {3, 0, 1, 1}, "label_2", "QLabel", "Exposure time (ms)"},
    FormRow{"extexposure", "gridLayout_2", {4, 0, 1, 1}, "exposureTime", "PDoubleRangeWidget", nullptr},
    FormRow{"extexposure", "gridLayout_2", {5, 0, 1, 1}, "label_3", "QLabel", "Gain"},
    FormRow{"extexposure", "gridLayout_2", {6, 0, 1, 1}, "exposureGain", "PRangeWidget", nullptr},
    FormRow{"extexposure", "gridLayout_3", {3, 0, 1, 4}, "horizontalLayout_2", "QHBoxLayout", nullptr},
    FormRow{"extexposure", "horizontalLayout_2", {0, 0, 1, 1}, "label_8", "QLabel", "Trigger mode:"},
    FormRow{"extexposure", "horizontalLayout_2", {0, 1, 1, 1}, "cbTriggerMode", "QComboBox", nullptr},
    FormRow{"extexposure", "gridLayout_3", {4, 0, 1, 4}, "horizontalLayout_3", "QHBoxLayout", nullptr},
    FormRow{"extexposure", "gridLayout_3", {5, 0, 1, 4}, "formLayout", "QFormLayout", nullptr},
    FormRow{"extexposure", "formLayout", {0, 0, 1, 1}, "label_4", "QLabel", "Minutes:"},
    FormRow{"extexposure", "formLayout", {0, 1, 1, 1}, "sM", "QSpinBox", nullptr},
    FormRow{"extexposure", "formLayout", {1, 0, 1, 1}, "label_5", "QLabel", "Seconds:"},
    FormRow{"extexposure", "formLayout", {1, 1, 1, 1}, "sSec", "QSpinBox", nullptr},
    FormRow{"extexposure", "formLayout", {2, 0, 1, 1}, "label_6", "QLabel", "Milliseconds:"},
    FormRow{"extexposure", "formLayout", {2, 1, 1, 1}, "sMS", "QSpinBox", nullptr},
    FormRow{"extexposure", "formLayout", {3, 0, 1, 1}, "label_7", "QLabel", "Microseconds:"},
    FormRow{"extexposure", "formLayout", {3, 1, 1, 1}, "sUS", "QSpinBox", nullptr},
    FormRow{"extexposure", "gridLayout_3", {6, 0, 1, 4}, "pbRunOnce", "QPushButton", "Run once"},
    FormRow{"extexposure", "gridLayout_3", {8, 0, 1, 4}, "pbRepeatMode", "QPushButton", "Run repeat mode"},
    FormRow{"extexposure", "gridLayout_3", {9, 0, 1, 4}, "horizontalLayout_4", "QHBoxLayout", nullptr},
    FormRow{"extexposure", "horizontalLayout_4", {0, 0, 1, 1}, "pbSequence", "QPushButton", "Run sequence:"},
    FormRow{"extexposure", "horizontalLayout_4", {0, 1, 1, 1}, "label_9", "QLabel", "Count:"},
    FormRow{"extexposure", "horizontalLayout_4", {0, 2, 1, 1}, "spincount", "QSpinBox", nullptr},
    FormRow{"fan", "gridLayout", {0, 0, 1, 1}, "fanOnOff", "QCheckBox", "Fan enable"},
    FormRow{"fan", "gridLayout", {1, 0, 1, 1}, "label", "QLabel", "Fan speed:"},
    FormRow{"fan", "gridLayout", {2, 0, 1, 1}, "range", "PRangeWidget", nullptr},
    FormRow{"teccontrol", "gridLayout", {0, 0, 1, 1}, "checkBox", "QCheckBox", "Enable TEC"},
    FormRow{"teccontrol", "gridLayout", {1, 0, 1, 1}, "label_2", "QLabel", "Current temperature:"},
    FormRow{"teccontrol", "gridLayout", {1, 1, 1, 1}, "temp", "QLabel", "%1"},
    FormRow{"teccontrol", "gridLayout", {2, 0, 1, 1}, "label_3", "QLabel", "Voltage:"},
    FormRow{"teccontrol", "gridLayout", {2, 1, 1, 1}, "tecVoltage", "QLabel", "%1"},
    FormRow{"teccontrol", "gridLayout", {3, 0, 1, 2}, "label", "QLabel", "Target TEC temperature:"},
    FormRow{"teccontrol", "gridLayout", {4, 0, 1, 2}, "widget", "PDoubleRangeWidget", nullptr},
    FormRow{"backlight", "gridLayout", {0, 0, 1, 1}, "label", "QLabel", nullptr},
    FormRow{"backlight", "gridLayout", {1, 0, 1, 1}, "dc", "QRadioButton", "DC"},
    FormRow{"backlight", "gridLayout", {2, 0, 1, 1}, "hz60", "QRadioButton", "50 Hz"},
    FormRow{"backlight", "gridLayout", {3, 0, 1, 1}, "hz50", "QRadioButton", "60 Hz"});
// clang-format on

namespace {

struct FrameRow {
    const char* name;
    const char* property;
    const char* object;
    std::map<const char*, int> margins; ///< of layouts, all four sides
};

class PanelFrame : public PanelFixture, public WithRow<FrameRow> {};

} // namespace

ROW_TEST(PanelFrame, has_its_name_its_title_and_its_margins) {
    const FrameRow& row = GetParam();
    const auto panel = newPanel(row.property);
    EXPECT_EQ(panel->parent(), nullptr);
    EXPECT_EQ(panel->objectName(), QString::fromLatin1(row.object));
    EXPECT_EQ(panel->windowTitle(), u"Form"_qs);
    for (const auto& [name, margin] : row.margins) {
        const auto* const layout = panel->findChild<QGridLayout*>(QString::fromLatin1(name));
        ASSERT_NE(layout, nullptr) << name;
        EXPECT_EQ(layout->contentsMargins(), QMargins(margin, margin, margin, margin)) << name;
    }
}

ROWS(Rows, PanelFrame,
     FrameRow{"exposure",
              "extexposure",
              "PTExtendedExposure",
              {{"gridLayout", 0}, {"gridLayout_2", 3}, {"gridLayout_3", 3}}},
     FrameRow{"fan", "fan", "PTFanControl", {{"gridLayout", 0}}},
     FrameRow{"cooler", "teccontrol", "PTTecControl", {{"gridLayout", 0}}},
     FrameRow{"light", "backlight", "PTBacklight", {{"gridLayout", 0}}});

// ---- What is not in the tables above.

class PanelFormDetails : public PanelFixture {};

TEST_F(PanelFormDetails, the_exposure_panel_is_264_by_273) {
    const auto panel = newPanel("extexposure");
    EXPECT_EQ(panel->size(), QSize(264, 273));
}

TEST_F(PanelFormDetails, the_room_left_on_the_trigger_page_is_in_its_row_10) {
    const auto panel = newPanel("extexposure");
    const auto* const layout = panel->findChild<QGridLayout*>(u"gridLayout_3"_qs);
    ASSERT_NE(layout, nullptr);
    QLayoutItem* const item = layout->itemAtPosition(10, 0);
    ASSERT_NE(item, nullptr);
    ASSERT_NE(item->spacerItem(), nullptr);
    EXPECT_EQ(item->expandingDirections(), Qt::Vertical);
}

TEST_F(PanelFormDetails, the_light_panel_is_300_by_160_and_grows_in_width_alone) {
    const auto panel = newPanel("backlight");
    EXPECT_EQ(panel->size(), QSize(300, 160));
    EXPECT_EQ(panel->minimumSize(), QSize(160, 160));
    EXPECT_EQ(panel->maximumSize(), QSize(16777215, 160));
    const QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    EXPECT_EQ(panel->sizePolicy(), policy);
    const auto* const label = control<QLabel>(panel, "label");
    EXPECT_EQ(label->sizePolicy().horizontalPolicy(), QSizePolicy::Preferred);
    EXPECT_EQ(label->sizePolicy().verticalPolicy(), QSizePolicy::Maximum);
    EXPECT_TRUE(label->wordWrap());
}

TEST_F(PanelFormDetails, the_light_panel_explains_itself_in_italics) {
    const auto panel = newPanel("backlight");
    EXPECT_EQ(control<QLabel>(panel, "label")->text(),
              u"<html><head/><body><p><span style=\" font-style:italic;\">Select compensate "
              "backlight fluctuation mode, if you have halogen light source select value "
              "50/60Hz, in case of LED select DC. Some exposure values may be unavailable when "
              "you select 50/60 Hz mode.</span></p></body></html>"_qs);
}

TEST_F(PanelFormDetails, the_light_buttons_exclude_each_other) {
    const auto panel = newPanel("backlight");
    for (const char* name : {"dc", "hz60", "hz50"})
        EXPECT_TRUE(control<QRadioButton>(panel, name)->autoExclusive()) << name;
}

TEST_F(PanelFormDetails, the_page_buttons_are_navigation_and_exclude_each_other) {
    const auto panel = newPanel("extexposure");
    for (const char* name : {"pbVideo", "pbTrigger"}) {
        const auto* const button = control<QPushButton>(panel, name);
        EXPECT_EQ(button->accessibleName(), u"nav"_qs) << name;
        EXPECT_TRUE(button->isCheckable() && button->autoExclusive()) << name;
    }
    EXPECT_TRUE(control<QPushButton>(panel, "pbVideo")->isChecked());
    const QString style = panel->styleSheet().simplified();
    for (const char* part :
         {"QPushButton[accessibleName=\"nav\"] { background: #d5d5d5; border-style: inset; "
          "border-width: 0px; border-color: white; font: 13px; padding: 3px; }",
          "QPushButton[accessibleName=\"nav\"]:hover { background: rgb(120, 120, 120); color: "
          "white; font: 13px; }",
          "QPushButton[accessibleName=\"nav\"]:checked { background: rgb(49, 49, 49); color: "
          "white; font: 13px; }"})
        EXPECT_TRUE(style.contains(QLatin1String(part))) << part;
}

TEST_F(PanelFormDetails, the_run_buttons_are_checkable_and_do_not_exclude_each_other) {
    const auto panel = newPanel("extexposure");
    for (const char* name : {"pbRunOnce", "pbSequence", "pbRepeatMode"}) {
        const auto* const button = control<QPushButton>(panel, name);
        EXPECT_TRUE(button->isCheckable() && !button->autoExclusive()) << name;
        EXPECT_TRUE(button->accessibleName().isEmpty()) << name;
    }
}

TEST_F(PanelFormDetails, the_pages_are_video_and_trigger) {
    const auto panel = newPanel("extexposure");
    const auto* const pages = control<QStackedWidget>(panel, "stackedWidget");
    ASSERT_EQ(pages->count(), 2);
    EXPECT_EQ(pages->widget(0)->objectName(), u"page"_qs);
    EXPECT_EQ(pages->widget(1)->objectName(), u"page_2"_qs);
    EXPECT_NE(pages->widget(0)->findChild<QWidget*>(u"exposureTarget"_qs), nullptr);
    EXPECT_NE(pages->widget(1)->findChild<QWidget*>(u"pbSequence"_qs), nullptr);
}

TEST_F(PanelFormDetails, the_trigger_is_by_software_or_external) {
    const auto panel = newPanel("extexposure");
    const auto* const modes = control<QComboBox>(panel, "cbTriggerMode");
    ASSERT_EQ(modes->count(), 2);
    EXPECT_EQ(modes->itemText(0), u"Software"_qs);
    EXPECT_EQ(modes->itemText(1), u"External"_qs);
}

TEST_F(PanelFormDetails, the_number_boxes_have_their_ends) {
    const auto panel = newPanel("extexposure");
    const std::map<const char*, std::pair<int, int>> ends{{"sM", {0, 60}},
                                                          {"sSec", {0, 60}},
                                                          {"sMS", {0, 999}},
                                                          {"sUS", {0, 999}},
                                                          {"spincount", {1, 999}}};
    for (const auto& [name, range] : ends) {
        const auto* const box = control<QSpinBox>(panel, name);
        EXPECT_EQ(std::make_pair(box->minimum(), box->maximum()), range) << name;
        EXPECT_EQ(box->minimumWidth(), name == std::string("spincount") ? 0 : 44) << name;
    }
}
