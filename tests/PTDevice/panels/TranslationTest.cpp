// SPDX-License-Identifier: MIT
// The plugin in Russian: everything that the user reads, from the catalogue in the resource.
#include <PTDevice/panels/PanelFixture.h>
#include <PTDevice/panels/RussianTexts.h>

#include <PCd/PEnumeration.h>
#include <PCd/property/PDevicePropertyGroup.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>

#include <gmock/gmock.h>

using testing::IsEmpty;

namespace {

class Translation : public PanelFixture {
protected:
    /// Titles are translated when the camera's property list is made.
    Translation() { openCamera(fullCamera()); }

    /// The texts that have letters, but no Russian ones.
    static QStringList untranslated(const QStringList& texts) {
        static const QRegularExpression latin(u"[A-Za-z]"_qs);
        static const QRegularExpression cyrillic(u"[\\x{0400}-\\x{04ff}]"_qs);
        QStringList left;
        for (const QString& text : texts) {
            if (text.contains(latin) && !text.contains(cyrillic))
                left.append(text);
        }
        return left;
    }

    const RussianTexts russian;
};

const char* const panelIds[] = {"extexposure", "fan", "teccontrol", "backlight"};

struct TextRow {
    const char* name;
    const char* property;
    const char* control;
    const char* text;
};

class RussianPanel : public Translation, public WithRow<TextRow> {};

} // namespace

TEST_F(Translation, the_titles_and_descriptions_of_all_properties_are_russian) {
    QStringList texts;
    for (const PDeviceProperty* one : device->supportProperties())
        texts << one->title() << one->description();
    EXPECT_THAT(untranslated(texts), IsEmpty());
    EXPECT_EQ(property("autoexpottime")->title(), u"Выдержка"_qs);
    EXPECT_EQ(property("autoexpogain")->title(), u"Усиление"_qs);
    EXPECT_EQ(property("roi")->title(), u"Область интереса"_qs);
    EXPECT_EQ(property("colormatrix")->title(), u"Матрица цветокоррекции"_qs);
    EXPECT_EQ(property("wbgain")->title(), u"Коэффициенты баланса белого"_qs);
    EXPECT_EQ(property("vflip")->title(), u"Отражение по вертикали"_qs);
    EXPECT_EQ(property("hflip")->title(), u"Отражение по горизонтали"_qs);
    EXPECT_EQ(property("speed")->title(), u"Скорость считывания"_qs);
    EXPECT_TRUE(property("speed")->description().endsWith(u"скорость считывания."_qs));
}

TEST_F(Translation, the_titles_of_all_groups_are_russian) {
    QStringList titles;
    for (const PDevicePropertyGroup* group : device->supportPropertyGroups())
        titles.append(group->title());
    EXPECT_THAT(untranslated(titles), IsEmpty());
    EXPECT_TRUE(titles.startsWith(u"Параметры экспозиции"_qs));
    EXPECT_TRUE(titles.contains(u"Скорость считывания"_qs));
}

TEST_F(Translation, the_titles_of_all_choices_are_russian_and_their_names_are_not) {
    QStringList titles;
    QStringList names;
    for (const PDeviceProperty* one : device->supportProperties()) {
        const auto choices = one->rangeInner().value<PEnumeration>();
        for (const PEnumerationItem& item : choices.items()) {
            titles.append(item.title);
            names.append(item.name);
        }
    }
    EXPECT_EQ(titles.size(), 15);
    EXPECT_THAT(untranslated(titles), IsEmpty());
    EXPECT_TRUE(titles.contains(u"Среднее 2×2"_qs));
    EXPECT_TRUE(names.contains(u"Average 2x2"_qs));
}

TEST_F(Translation, a_panel_that_is_made_now_is_russian) {
    for (const char* id : panelIds) {
        const auto panel = newPanel(id);
        EXPECT_THAT(untranslated(shownTexts(panel.get())), IsEmpty()) << id;
    }
}

ROW_TEST(RussianPanel, uses_the_words_of_a_microscopist) {
    const auto panel = newPanel(GetParam().property);
    const QString text = control<QWidget>(panel, GetParam().control)->property("text").toString();
    EXPECT_TRUE(text.contains(QString::fromUtf8(GetParam().text))) << text.toStdString();
}

ROWS(Texts, RussianPanel, TextRow{"the_page", "extexposure", "pbTrigger", "ТРИГГЕР"},
     TextRow{"the_mode_on_it", "extexposure", "label_8", "Режим триггера:"},
     TextRow{"cooler", "teccontrol", "checkBox", "Охлаждение сенсора (TEC)"},
     TextRow{"temperature", "teccontrol", "label_2", "Текущая температура:"},
     TextRow{"flicker", "backlight", "label", "может быть недоступна"});

TEST_F(Translation, the_buttons_of_runs_are_russian_after_the_first_click_too) {
    const auto panel = openPanel("extexposure");
    clickOn(control<QPushButton>(panel, "pbTrigger"));
    for (const char* name : {"pbRunOnce", "pbSequence", "pbRepeatMode"}) {
        auto* const button = control<QPushButton>(panel, name);
        clickOn(button);
        EXPECT_EQ(button->text(), u"Стоп"_qs);
        clickOn(button);
        EXPECT_THAT(untranslated(shownTexts(panel.get())), IsEmpty());
    }
}

TEST_F(Translation, the_readings_of_the_cooler_are_russian) {
    const auto panel = openPanel("teccontrol");
    const auto* const voltage = control<QLabel>(panel, "tecVoltage");
    EXPECT_TRUE(waitUntil([&] { return voltage->text() == u"0/12 (текущее/макс.)"_qs; }))
        << voltage->text().toStdString();
}

TEST_F(Translation, the_crossed_captions_stay_crossed) {
    const auto panel = openPanel("backlight");
    EXPECT_EQ(control<QAbstractButton>(panel, "hz60")->text(), u"50 Гц"_qs);
    EXPECT_EQ(control<QAbstractButton>(panel, "hz50")->text(), u"60 Гц"_qs);
}

TEST_F(Translation, a_text_in_latin_letters_alone_counts_as_untranslated) {
    const QStringList texts = u"%1|90°|Стоп|Stop"_qs.split(u'|');
    EXPECT_THAT(untranslated(texts), testing::ElementsAre(u"Stop"_qs));
}
