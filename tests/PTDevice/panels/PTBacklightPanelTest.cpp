// SPDX-License-Identifier: MIT
// The panel of the light frequency, operated by the user.
#include <PTDevice/panels/PanelFixture.h>

#include <PCdPlugins/PTDevice/PTPropBacklight.h>

#include <support/QtPrinters.h>

#include <QRadioButton>

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class PTBacklightPanel : public PanelFixture {
protected:
    QRadioButton* button(const char* name) const { return control<QRadioButton>(panel, name); }
    /// The captions of the checked buttons.
    QStringList checked() const {
        QStringList texts;
        for (const QRadioButton* one : panel->findChildren<QRadioButton*>()) {
            if (one->isChecked())
                texts.append(one->text());
        }
        return texts;
    }

    std::unique_ptr<QWidget> panel;
};

/// A camera with a code of its own that belongs to no button.
class StrangeBacklight : public PTBacklightProperty {
public:
    explicit StrangeBacklight(Toupcam_t* handle)
        : PTBacklightProperty(handle, "backlight", QString()) {}

    int tryGetValueFromDevice() override { return code; }

    int code = 2;
};

const QString dc = u"DC"_qs;
const QString hz50 = u"50 Hz"_qs;
const QString hz60 = u"60 Hz"_qs;

struct ButtonRow {
    const char* name;
    const char* object;
    QString caption;
    int value;
};

class PTBacklightButton : public PTBacklightPanel, public WithRow<ButtonRow> {};

} // namespace

ROW_TEST(PTBacklightButton, sends_its_code_once_when_clicked) {
    const ButtonRow& row = GetParam();
    property("backlight")->setValue(row.value == 2 ? 0 : 2);
    panel = openPanel("backlight");
    ASSERT_EQ(button(row.object)->text(), row.caption);
    clickOn(button(row.object));
    EXPECT_THAT(puts(), ElementsAre("Toupcam_put_HZ(h1, " + std::to_string(row.value) + ") = 0"));
    EXPECT_EQ(property("backlight")->valueInner(), QVariant(row.value));
    EXPECT_EQ(checked(), QStringList{row.caption});
}

ROW_TEST(PTBacklightButton, shows_its_code_at_first) {
    property("backlight")->setValue(GetParam().value);
    panel = openPanel("backlight");
    EXPECT_EQ(checked(), QStringList{GetParam().caption});
}

ROW_TEST(PTBacklightButton, shows_its_code_when_other_code_sets_it) {
    property("backlight")->setValue(GetParam().value == 2 ? 0 : 2);
    panel = openPanel("backlight");
    property("backlight")->setValue(GetParam().value);
    EXPECT_EQ(checked(), QStringList{GetParam().caption});
    // By the code that set it, and by the button that became checked.
    EXPECT_EQ(puts().size(), 2U);
}

ROWS(Rows, PTBacklightButton, ButtonRow{"direct_current", "dc", dc, 2},
     ButtonRow{"the_one_captioned_50_Hz", "hz60", hz50, 0},
     ButtonRow{"the_one_captioned_60_Hz", "hz50", hz60, 1});

TEST_F(PTBacklightPanel, opening_reads_and_sends_nothing) {
    SimJournal::clear();
    panel.reset(property("backlight")->createWidget());
    EXPECT_THAT(SimJournal::lines(), IsEmpty());
}

TEST_F(PTBacklightPanel, opened_with_a_code_that_no_button_has_it_leaves_all_unchecked) {
    StrangeBacklight strange(device->sdkHandle());
    strange.code = 7;
    strange.updateValueFromDevice();
    panel.reset(strange.createWidget());
    EXPECT_THAT(checked(), IsEmpty());
}

TEST_F(PTBacklightPanel, a_code_that_no_button_has_unchecks_all_and_a_click_chooses_again) {
    StrangeBacklight strange(device->sdkHandle());
    strange.updateValueFromDevice();
    panel.reset(strange.createWidget());
    ASSERT_EQ(checked(), QStringList{dc});
    strange.code = 7;
    strange.updateValueFromDevice();
    EXPECT_THAT(checked(), IsEmpty());
    strange.code = 0;
    clickOn(button("hz60"));
    EXPECT_EQ(checked(), QStringList{hz50});
    strange.code = 1;
    clickOn(button("hz50"));
    EXPECT_EQ(checked(), QStringList{hz60}) << "the buttons exclude each other again";
}

TEST_F(PTBacklightPanel, a_click_on_the_checked_button_leaves_it_checked) {
    panel = openPanel("backlight");
    ASSERT_EQ(checked(), QStringList{dc});
    clickOn(button("dc"));
    EXPECT_EQ(checked(), QStringList{dc});
    EXPECT_THAT(puts(), IsEmpty());
}

TEST_F(PTBacklightPanel, a_refused_code_gives_way_to_the_cameras) {
    panel = openPanel("backlight");
    ToupcamSim_failCall("Toupcam_put_HZ", 0, 1, E_FAIL);
    clickOn(button("hz50"));
    EXPECT_EQ(checked(), QStringList{dc});
    EXPECT_EQ(property("backlight")->valueInner(), QVariant(2));
}

TEST_F(PTBacklightPanel, destroyed_before_the_property_it_is_left_alone) {
    panel = openPanel("backlight");
    panel.reset();
    property("backlight")->setValue(1);
    EXPECT_THAT(puts(), ElementsAre("Toupcam_put_HZ(h1, 1) = 0"));
}

TEST_F(PTBacklightPanel, after_the_end_of_its_camera_it_sends_nothing) {
    panel = openPanel("backlight");
    device.reset();
    SimJournal::clear();
    clickOn(button("hz50"));
    EXPECT_THAT(SimJournal::lines(), IsEmpty());
}

TEST_F(PTBacklightPanel, of_a_property_that_nobody_has_read_it_shows_code_0) {
    PTBacklightProperty unused(device->sdkHandle(), "backlight", QString());
    panel.reset(unused.createWidget());
    EXPECT_EQ(checked(), QStringList{hz50}) << "that is its caption";
}
