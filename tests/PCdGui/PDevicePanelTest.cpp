// SPDX-License-Identifier: MIT
#include <PCdGui/PDevicePanel.h>

#include <PCdGui/CatalogueDevice.h>
#include <PCdGui/PCdGui.h>
#include <PCdGui/PPropertyGroupPanel.h>
#include <PCdGui/PPropertyLabel.h>
#include <PCdGui/TypedProperties.h>
#include <PCdGui/editor/PActionEditor.h>
#include <PCdGui/editor/PPropertyEditor.h>
#include <PCdGui/editor/PRegionEditor.h>
#include <PCdGui/editor/PSwitchEditor.h>

#include <PCd/FakeDevice.h>
#include <PCd/property/PPropertyRoles.h>
#include <PGui/PDoubleRangeWidget.h>
#include <PGui/WidgetHands.h>
#include <support/QtPrinters.h>

#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QScrollBar>
#include <QTranslator>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

/// A translation catalogue with a text of a plugin, and with texts of some editors.
class OneWord : public QTranslator {
public:
    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* text, const char*, int) const override {
        if (qstrcmp(context, "TranslatedLabel") == 0)
            return u"Охлаждение"_qs;
        if (qstrcmp(text, "Whole sensor") == 0)
            return u"Весь сенсор"_qs;
        if (qstrcmp(text, "Height") == 0)
            return u"Высота"_qs;
        if (qstrcmp(text, "Default: %1") == 0)
            return u"По умолчанию: %1"_qs;
        return qstrcmp(text, "(unknown)") == 0 ? u"(неизвестно)"_qs : QString();
    }
};

/// Updates its text when the language changes, as plugins' panels do.
class TranslatedLabel : public QLabel {
public:
    explicit TranslatedLabel(QWidget* parent)
        : QLabel(parent) {
        retranslate();
    }

protected:
    void changeEvent(QEvent* event) override {
        if (event->type() == QEvent::LanguageChange)
            retranslate();
        QLabel::changeEvent(event);
    }

private:
    void retranslate() { setText(QCoreApplication::translate("TranslatedLabel", "Chilling")); }
};

class PDevicePanelTest : public testing::Test {
protected:
    PDevicePanelTest() {
        PCdGui::install();
        widget.reset(device->createPropertiesWidget(nullptr));
        widget->resize(420, 300);
        EXPECT_TRUE(showActive(widget.get()));
    }

    PDevicePanel* panel() const { return qobject_cast<PDevicePanel*>(widget.get()); }

    QStringList shownGroups() const {
        QStringList titles;
        for (const QGroupBox* group : panel()->findChildren<PPropertyGroupPanel*>()) {
            if (group->isVisible())
                titles.append(group->title());
        }
        return titles;
    }

    bool isNoticeShown(const QString& text) const {
        for (const QLabel* label : panel()->findChildren<QLabel*>()) {
            if (label->text() == text)
                return label->isVisible();
        }
        ADD_FAILURE() << "no such notice";
        return false;
    }

    template <typename... Titles>
    static QStringList list(Titles... titles) {
        return {QString::fromLatin1(titles)...};
    }

    std::unique_ptr<CatalogueDevice> device = std::make_unique<CatalogueDevice>();
    std::unique_ptr<QWidget> widget;
};

} // namespace

TEST_F(PDevicePanelTest, is_what_the_device_makes_inside_the_parent) {
    ASSERT_NE(panel(), nullptr);
    QWidget parent;
    EXPECT_EQ(device->createPropertiesWidget(&parent)->parent(), &parent);
}

TEST_F(PDevicePanelTest, has_the_groups_with_members_in_order_then_the_rest) {
    EXPECT_EQ(shownGroups(),
              list("White balance", "Color", "Binning", "Frame", "Speed", "Cooling", "Other"));
}

TEST_F(PDevicePanelTest, shows_every_property_once) {
    const qsizetype own = 2; // panels of their own
    EXPECT_EQ(panel()->findChildren<PPropertyEditor*>().size() + own,
              device->supportProperties().size());
}

TEST_F(PDevicePanelTest, aligns_the_titles_of_all_groups) {
    QSet<int> widths;
    for (const QLabel* title : panel()->findChildren<PPropertyLabel*>()) {
        if (title->text() != u"ROI"_qs) // which has a row of its own
            widths.insert(title->width());
    }
    EXPECT_EQ(widths.size(), 1);
}

TEST_F(PDevicePanelTest, stays_narrow_where_titles_are_long) {
    const auto widthWith = [](const char* title) {
        FakeDevice camera;
        camera.makeProperties = [title] {
            return QList<PDeviceProperty*>{
                new FakeChoice("flip", QString::fromUtf8(title), {u"On"_qs}),
                new FakeRegion("roi")};
        };
        PDevicePanel page(&camera);
        page.resize(page.minimumSizeHint());
        EXPECT_TRUE(showActive(&page));
        const auto* const label = page.findChild<PPropertyLabel*>();
        if (label == nullptr) {
            ADD_FAILURE() << "no title";
            return 0;
        }
        EXPECT_GE(label->height(), label->heightForWidth(label->width()));
        return page.minimumSizeHint().width();
    };
    EXPECT_LE(widthWith("Отражение изображения по горизонтали и вертикали сразу"),
              widthWith("Flip horizontally") + 20);
}

TEST_F(PDevicePanelTest, gives_short_titles_no_more_room_than_they_need) {
    FakeDevice camera;
    camera.makeProperties = [] {
        return QList<PDeviceProperty*>{new FakeChoice("flip", u"Flip"_qs, {u"On"_qs})};
    };
    PDevicePanel page(&camera);
    ASSERT_TRUE(showActive(&page));
    const auto* const title = page.findChild<PPropertyLabel*>();
    ASSERT_NE(title, nullptr);
    EXPECT_EQ(title->width(), QLabel(title->text()).sizeHint().width());
}

TEST_F(PDevicePanelTest, shows_the_numbers_of_a_region_below_their_title_and_hides_both_together) {
    const auto labels = panel()->findChildren<PPropertyLabel*>();
    const auto title = std::find_if(labels.begin(), labels.end(),
                                    [](const QLabel* label) { return label->text() == u"ROI"_qs; });
    ASSERT_NE(title, labels.end());
    const auto* const region = panel()->findChild<PRegionEditor*>();
    ASSERT_NE(region, nullptr);
    EXPECT_GT(region->y(), (*title)->y());
    EXPECT_LT(region->x(), (*title)->geometry().right());
    panel()->setFilter(u"binning"_qs);
    EXPECT_FALSE((*title)->isVisible());
    panel()->setFilter(u"roi"_qs);
    EXPECT_TRUE((*title)->isVisible());
    EXPECT_TRUE(region->isVisible());
}

TEST_F(PDevicePanelTest, hides_rows_and_groups_that_a_filter_does_not_match) {
    panel()->setFilter(u"flip"_qs);
    EXPECT_EQ(shownGroups(), list("Frame"));
    panel()->setFilter(QString());
    EXPECT_EQ(shownGroups().size(), 7);
}

TEST_F(PDevicePanelTest, finds_the_words_on_panels_that_a_device_brings) {
    panel()->setFilter(u"current temperature"_qs);
    EXPECT_EQ(shownGroups(), list("Cooling"));
}

TEST_F(PDevicePanelTest, filters_again_when_the_language_changes) {
    const QList<QCheckBox*> boxes = panel()->findChildren<QCheckBox*>();
    const auto fan = std::find_if(boxes.begin(), boxes.end(), [](const QCheckBox* box) {
        return box->text() == u"Fan enable"_qs;
    });
    ASSERT_NE(fan, boxes.end());
    auto* const word = new TranslatedLabel((*fan)->parentWidget());
    word->show();
    panel()->setFilter(u"охлаждение"_qs);
    EXPECT_EQ(shownGroups(), QStringList());
    OneWord russian;
    QCoreApplication::installTranslator(&russian);
    QCoreApplication::processEvents();
    EXPECT_EQ(shownGroups().size(), 1);
    QCoreApplication::removeTranslator(&russian);
    QCoreApplication::processEvents();
    EXPECT_EQ(shownGroups(), QStringList());
}

TEST_F(PDevicePanelTest, follows_the_language_with_the_titles_of_groups_and_settings) {
    const auto word = [] { return QCoreApplication::translate("TranslatedLabel", "Chilling"); };
    FakeDevice camera;
    camera.makeProperties = [word] {
        auto* const chrome = new FakeSwitch("chrome", word());
        chrome->setDescription(word() + u"!"_qs);
        return QList<PDeviceProperty*>{chrome, new FakeAction("once", word()),
                                       new FakeSwitch("rest", word())};
    };
    camera.makeGroups = [&] {
        auto* const group = new PDevicePropertyGroup(u"color"_qs, word());
        group->addProperty(camera.getProperty("chrome"));
        group->addProperty(camera.getProperty("once"));
        return QList<PDevicePropertyGroup*>{group};
    };
    ASSERT_TRUE(camera.link().isOk());
    PDevicePanel page(&camera);
    ASSERT_TRUE(showActive(&page));
    OneWord russian;
    QCoreApplication::installTranslator(&russian);
    QCoreApplication::processEvents();
    QStringList titles;
    for (const auto* group : page.findChildren<PPropertyGroupPanel*>())
        titles.append(group->title());
    const QString translated = u"Охлаждение"_qs;
    EXPECT_EQ(titles, QStringList({translated, u"Other"_qs}));
    titles.clear();
    for (const auto* label : page.findChildren<PPropertyLabel*>())
        titles.append(label->text());
    EXPECT_EQ(titles, QStringList({translated, QString(), translated}));
    EXPECT_EQ(page.findChild<PActionEditor*>()->findChild<QPushButton*>()->text(), translated);
    EXPECT_TRUE(page.findChild<PSwitchEditor*>()->toolTip().contains(translated + u"!"_qs));
    page.setFilter(u"охлаждение"_qs);
    EXPECT_TRUE(page.findChild<PSwitchEditor*>()->isVisible());
    QCoreApplication::removeTranslator(&russian);
    QCoreApplication::processEvents();
    EXPECT_EQ(page.findChild<PPropertyLabel*>()->text(), u"Chilling"_qs);
    EXPECT_FALSE(page.findChild<PSwitchEditor*>()->isVisible());
}

class PDevicePanelLanguage : public PDevicePanelTest {
protected:
    PDevicePanelLanguage() {
        camera.makeProperties = [] {
            const QString word = QCoreApplication::translate("TranslatedLabel", "Chilling");
            auto* const binning = new FakeChoice("binning", word, {word, u"2x2"_qs});
            binning->setDefaultValue(FakeChoice::itemId(0));
            return QList<PDeviceProperty*>{binning, new FakeRegion("roi", word),
                                           new FakeSwitch("chrome", word)};
        };
    }
    void SetUp() override {
        ASSERT_TRUE(camera.link().isOk());
        page = std::make_unique<PDevicePanel>(&camera);
        ASSERT_TRUE(showActive(page.get()));
        ASSERT_NE(box(), nullptr);
        ASSERT_NE(page->findChild<PPropertyEditor*>(), nullptr);
        ASSERT_NE(page->findChild<QCheckBox*>(), nullptr);
        const auto* const region = page->findChild<PRegionEditor*>();
        ASSERT_NE(region, nullptr);
        ASSERT_NE(region->findChild<QPushButton*>(), nullptr);
    }
    void speakRussian() {
        QCoreApplication::installTranslator(&russian);
        QCoreApplication::processEvents();
    }
    void speakEnglish() {
        QCoreApplication::removeTranslator(&russian);
        QCoreApplication::processEvents();
    }
    QComboBox* box() const { return page->findChild<QComboBox*>(); }
    QStringList wordsOfRegion() const {
        const auto* const region = page->findChild<PRegionEditor*>();
        QStringList words{region->findChild<QPushButton*>()->text()};
        for (const auto* label : region->findChildren<QLabel*>())
            words.append(label->text());
        for (const auto* field : region->findChildren<PNumberField*>())
            words.append(field->accessibleName());
        return words;
    }

    OneWord russian;
    FakeDevice camera;
    std::unique_ptr<PDevicePanel> page;
    const QString translated = u"Охлаждение"_qs;
};

TEST_F(PDevicePanelLanguage, is_that_of_open_choices_and_they_stay_as_chosen) {
    auto* const binning = static_cast<FakeChoice*>(camera.getProperty("binning"));
    const QString english = page->findChild<PPropertyEditor*>()->toolTip();
    speakRussian();
    EXPECT_EQ(box()->count(), 2);
    EXPECT_EQ(box()->itemText(0), translated);
    EXPECT_EQ(box()->itemText(1), u"2x2"_qs);
    EXPECT_EQ(box()->currentText(), translated);
    EXPECT_EQ(box()->accessibleName(), translated);
    EXPECT_EQ(box()->placeholderText(), u"(неизвестно)"_qs);
    EXPECT_EQ(page->findChild<PPropertyEditor*>()->toolTip(),
              u"<p>По умолчанию: Охлаждение</p>"_qs);
    // The device changes while the language stays.
    binning->inDevice = FakeChoice::itemId(1);
    binning->updateValueFromDevice();
    binning->inDevice = FakeChoice::itemId(0);
    binning->updateValueFromDevice(true);
    EXPECT_EQ(box()->currentText(), translated);
    EXPECT_TRUE(binning->sets.isEmpty());
    speakEnglish();
    EXPECT_EQ(box()->itemText(0), u"Chilling"_qs);
    EXPECT_EQ(box()->placeholderText(), u"(unknown)"_qs);
    EXPECT_EQ(page->findChild<PPropertyEditor*>()->toolTip(), english);
}

TEST_F(PDevicePanelLanguage, is_that_of_the_numbers_and_the_button_of_an_open_region) {
    const QStringList english = wordsOfRegion();
    speakRussian();
    EXPECT_EQ(wordsOfRegion(),
              QStringList({u"Весь сенсор"_qs, u"X"_qs, u"Y"_qs, u"Width"_qs, u"Высота"_qs,
                           translated + u": X"_qs, translated + u": Y"_qs,
                           translated + u": Width"_qs, translated + u": Высота"_qs}));
    EXPECT_EQ(page->findChild<QCheckBox*>()->accessibleName(), translated);
    speakEnglish();
    EXPECT_EQ(wordsOfRegion(), english);
}

TEST_F(PDevicePanelLanguage, is_that_of_the_editors_own_words_where_the_device_is_gone) {
    camera.unlink();
    speakRussian();
    EXPECT_EQ(wordsOfRegion().value(0), u"Весь сенсор"_qs);
    EXPECT_EQ(box()->placeholderText(), u"(неизвестно)"_qs);
    EXPECT_EQ(box()->itemText(0), u"Chilling"_qs);
    speakEnglish();
}

TEST_F(PDevicePanelTest, says_if_nothing_matches) {
    EXPECT_FALSE(isNoticeShown(u"No setting matches."_qs));
    panel()->setFilter(u"nothing has this"_qs);
    EXPECT_TRUE(isNoticeShown(u"No setting matches."_qs));
    EXPECT_EQ(shownGroups(), QStringList());
}

TEST_F(PDevicePanelTest, keeps_a_value_if_the_condition_does_not_allow_another) {
    auto* const property = panel()->findChild<PSwitchEditor*>()->property();
    PPropertyRoles::declare(*property, {{PRole::Negative}});
    QByteArray asked;
    panel()->setCondition({PRole::Hue, PRole::Negative},
                          [&](const PDeviceProperty& one, const QVariant&) {
                              asked = one.id();
                              return false;
                          });
    auto* const box = panel()->findChild<PSwitchEditor*>()->findChild<QCheckBox*>();
    const bool before = box->isChecked();
    box->click();
    EXPECT_NE(box->isChecked(), before); // until the condition is asked
    QCoreApplication::processEvents();
    EXPECT_EQ(box->isChecked(), before);
    EXPECT_EQ(asked, property->id());
}

TEST_F(PDevicePanelTest, sends_without_the_condition_what_has_none_of_its_roles) {
    auto* const property = panel()->findChild<PSwitchEditor*>()->property();
    PPropertyRoles::declare(*property, {{PRole::Negative}});
    bool isAsked = false;
    panel()->setCondition({PRole::Hue}, [&](const PDeviceProperty&, const QVariant&) {
        isAsked = true;
        return false;
    });
    const bool before = property->valueInner().toBool();
    panel()->findChild<PSwitchEditor*>()->findChild<QCheckBox*>()->click();
    widget.reset(); // what is still pending is sent
    EXPECT_EQ(property->valueInner().toBool(), !before);
    EXPECT_FALSE(isAsked);
}

TEST_F(PDevicePanelTest, is_disabled_with_the_device_panels_of_their_own_included) {
    device->link();
    device->unlink();
    for (const QWidget* control : panel()->findChildren<PRangeWidgetBase*>())
        EXPECT_FALSE(control->isEnabled());
    EXPECT_TRUE(isNoticeShown(u"The device is not connected."_qs));
    EXPECT_TRUE(panel()->verticalScrollBar()->isEnabled()) << "it can still be read";
}

TEST_F(PDevicePanelTest, outlives_the_device) {
    device.reset();
    panel()->setFilter(u"gain"_qs);
    EXPECT_EQ(shownGroups(), list("Other"));
    EXPECT_TRUE(isNoticeShown(u"The device is not connected."_qs));
}

TEST_F(PDevicePanelTest, scrolls_by_the_wheel_over_a_control_without_the_focus) {

    for (QWidget* control : std::initializer_list<QWidget*>{panel()->findChild<PNumberField*>(),
                                                            panel()->findChild<PRangeSlider*>(),
                                                            panel()->findChild<QComboBox*>()}) {
        panel()->verticalScrollBar()->setValue(0);
        if (QWidget* const focused = QApplication::focusWidget())
            focused->clearFocus();
        turnWheel(control, -1);
        EXPECT_GT(panel()->verticalScrollBar()->value(), 0) << control->metaObject()->className();
        EXPECT_FALSE(control->hasFocus());
    }
    auto* const tint = static_cast<FakeNumber*>(device->getProperty("tint"));
    QCoreApplication::processEvents();
    EXPECT_TRUE(tint->sets.isEmpty());
}

TEST_F(PDevicePanelTest, turns_the_wheel_for_a_control_with_the_focus_and_for_its_slider) {
    auto* const tint = static_cast<FakeNumber*>(device->getProperty("tint"));
    auto* const field = panel()->findChild<PNumberField*>();
    field->setFocus();
    turnWheel(field, 1);
    QCoreApplication::processEvents();
    turnWheel(panel()->findChild<PRangeSlider*>(), 1);
    QCoreApplication::processEvents();
    EXPECT_EQ(tint->sets, QList<int>({1001, 1002}));
    EXPECT_EQ(panel()->verticalScrollBar()->value(), 0);
}

TEST_F(PDevicePanelTest, is_wide_enough_for_its_widest_row) {
    EXPECT_GE(panel()->minimumSizeHint().width(),
              panel()->widget()->minimumSizeHint().width() +
                  panel()->verticalScrollBar()->sizeHint().width());
}
