// SPDX-License-Identifier: MIT
// Panels that are open while the program's language changes.
#include <PTDevice/panels/ExposurePanelFixture.h>
#include <PTDevice/panels/RussianTexts.h>
#include <PTDevice/panels/SdkReadings.h>

#include <support/QtPrinters.h>

#include <gmock/gmock.h>

#include <optional>

namespace {

/// A test can switch to Russian and back while a panel is open.
class LanguageChange : public ExposurePanelFixture {
protected:
    void speakRussian() {
        russian.emplace();
        QCoreApplication::processEvents(); // an event notifies the windows
    }
    void speakEnglish() {
        russian.reset();
        QCoreApplication::processEvents();
    }
    QString shownText(const char* name) const {
        return control<QWidget>(panel, name)->property("text").toString();
    }

    std::optional<RussianTexts> russian;
};

struct PanelRow {
    const char* name;
    const char* property;
};

class LanguageChangeOfPanel : public LanguageChange, public WithRow<PanelRow> {
protected:
    QStringList textsOfNewPanel() const {
        const auto fresh = newPanel(GetParam().property);
        return shownTexts(fresh.get());
    }
};

} // namespace

ROW_TEST(LanguageChangeOfPanel, gives_an_open_panel_the_texts_of_a_new_one) {
    panel = openPanel(GetParam().property);
    const QStringList english = shownTexts(panel.get());
    ASSERT_EQ(english, textsOfNewPanel());
    speakRussian();
    EXPECT_EQ(shownTexts(panel.get()), textsOfNewPanel());
    EXPECT_NE(shownTexts(panel.get()), english);
    speakEnglish();
    EXPECT_EQ(shownTexts(panel.get()), english);
}

ROW_TEST(LanguageChangeOfPanel, reaches_a_panel_within_a_window) {
    QWidget window;
    QWidget* const inside = openPanel(GetParam().property).release();
    inside->setParent(&window);
    speakRussian();
    EXPECT_EQ(shownTexts(inside), textsOfNewPanel());
}

ROW_TEST(LanguageChangeOfPanel, sends_the_camera_nothing) {
    panel = openPanel(GetParam().property);
    const QVariant before = property(GetParam().property)->valueInner();
    speakRussian();
    EXPECT_THAT(puts(), testing::IsEmpty());
    EXPECT_EQ(property(GetParam().property)->valueInner(), before);
}

ROW_TEST(LanguageChangeOfPanel, reaches_a_panel_whose_camera_is_gone) {
    panel = openPanel(GetParam().property);
    device.reset();
    const QStringList english = shownTexts(panel.get());
    speakRussian();
    EXPECT_NE(shownTexts(panel.get()), english);
}

ROWS(Panels, LanguageChangeOfPanel, PanelRow{"exposure", "extexposure"}, PanelRow{"fan", "fan"},
     PanelRow{"cooler", "teccontrol"}, PanelRow{"light", "backlight"});

// ---- Texts that are not in the forms.

TEST_F(LanguageChange, leaves_a_running_button_at_stop) {
    openWith(triggerRecord());
    for (const char* name : {"pbRunOnce", "pbSequence", "pbRepeatMode"}) {
        clickOn(button(name));
        speakRussian();
        EXPECT_EQ(shownText(name), u"Стоп"_qs);
        speakEnglish();
        EXPECT_EQ(shownText(name), u"Stop"_qs);
        clickOn(button(name));
    }
}

TEST_F(LanguageChange, gives_a_button_that_was_stopped_its_first_text_again) {
    openWith(triggerRecord());
    for (const char* name : {"pbSequence", "pbRepeatMode"}) {
        clickOn(button(name));
        clickOn(button(name));
    }
    EXPECT_EQ(shownText("pbSequence"), u"Run sequence"_qs);
    EXPECT_EQ(shownText("pbRepeatMode"), u"Run repeat"_qs);
    speakRussian();
    EXPECT_EQ(shownText("pbSequence"), u"Серия:"_qs);
    EXPECT_EQ(shownText("pbRepeatMode"), u"Непрерывная съёмка"_qs);
}

TEST_F(LanguageChange, reaches_the_reason_why_the_trigger_page_is_disabled) {
    openCamera(fullCamera().withFlags(R"(["USB30"])"));
    panel = openPanel("extexposure");
    speakRussian();
    EXPECT_EQ(button("pbTrigger")->toolTip(),
              u"Программный триггер этой камерой не поддерживается."_qs);
    speakEnglish();
    EXPECT_EQ(button("pbTrigger")->toolTip(), u"This camera cannot be triggered by software."_qs);
}

TEST_F(LanguageChange, keeps_the_trigger_mode_that_is_chosen) {
    ExtendedExposureData d = triggerRecord();
    d.triggermode = ExtendedExposureData::ExternalTrigger;
    openWith(d);
    speakRussian();
    EXPECT_EQ(triggerMode()->currentText(), u"Внешний"_qs);
}

TEST_F(LanguageChange, shows_the_last_readings_of_the_cooler_in_the_new_language) {
    const SdkReadings readings(-87, 73, 120);
    ASSERT_TRUE(device->link().isOk());
    panel = openPanel("teccontrol");
    ASSERT_TRUE(waitUntil([&] { return shownText("temp") == u"-8.7"_qs; }));
    device->unlink(); // no more readings come
    speakRussian();
    EXPECT_EQ(shownText("tecVoltage"), u"7.3/12 (текущее/макс.)"_qs);
    EXPECT_EQ(shownText("temp"), u"-8.7"_qs);
    speakEnglish();
    EXPECT_EQ(shownText("tecVoltage"), u"7.3/12 (current/max)"_qs);
}
