// SPDX-License-Identifier: MIT
#include <PCdGui/PPropertyGroupPanel.h>

#include <PCdGui/PCdGui.h>
#include <PCdGui/PPropertyLabel.h>
#include <PCdGui/TypedProperties.h>
#include <PCdGui/editor/PPropertyEditor.h>

#include <PGui/WidgetHands.h>
#include <support/QtPrinters.h>

#include <QCheckBox>
#include <QContextMenuEvent>
#include <QFormLayout>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace {

class PPropertyGroupPanelTest : public testing::Test {
protected:
    PPropertyGroupPanelTest() {
        PCdGui::install();
        gain.setDescription(u"Of the amplifier."_qs);
        panel = std::make_unique<PPropertyGroupPanel>(
            u"Cooling"_qs, QList<PDeviceProperty*>{&negative, &gain, &once, &composite});
        EXPECT_TRUE(showActive(panel.get()));
    }

    QStringList shownTitles() const {
        QStringList titles;
        for (const QLabel* label : panel->findChildren<PPropertyLabel*>()) {
            if (label->isVisible())
                titles.append(label->text());
        }
        return titles;
    }

    template <typename... Titles>
    static QStringList list(Titles... titles) {
        return {QString::fromLatin1(titles)...};
    }

    FakeSwitch negative{"negative", u"Negative"_qs};
    FakeNumber gain{"expogain", u"Gain"_qs, {0, 500, 1}, 100};
    FakeAction once{"awbonce", u"Balance"_qs};
    QLabel* own = nullptr;
    FakeComposite composite{"tec", [this] { return own = new QLabel(u"own"_qs); }};
    std::unique_ptr<PPropertyGroupPanel> panel;
};

} // namespace

TEST_F(PPropertyGroupPanelTest, has_a_title_and_an_editor_a_row) {
    EXPECT_EQ(panel->title(), u"Cooling"_qs);
    EXPECT_EQ(shownTitles(), list("Negative", "Gain", ""));
    EXPECT_EQ(panel->findChildren<PPropertyEditor*>().size(), 3);
}

TEST_F(PPropertyGroupPanelTest, gives_a_panel_of_its_own_the_whole_row) {
    ASSERT_NE(own, nullptr);
    QFormLayout::ItemRole role = QFormLayout::FieldRole;
    int row = -1;
    panel->findChild<QFormLayout*>()->getWidgetPosition(own, &row, &role);
    EXPECT_EQ(role, QFormLayout::SpanningRole);
    EXPECT_EQ(row, 3);
}

TEST_F(PPropertyGroupPanelTest, hides_what_a_filter_does_not_match) {
    EXPECT_TRUE(panel->setFilter(u"neg"_qs));
    EXPECT_EQ(shownTitles(), list("Negative"));
    EXPECT_FALSE(own->isVisible());
}

TEST_F(PPropertyGroupPanelTest, matches_title_id_and_description_with_all_words_in_any_case) {
    EXPECT_TRUE(panel->setFilter(u" AMPLIFIER  expo "_qs));
    EXPECT_EQ(shownTitles(), list("Gain"));
    EXPECT_FALSE(panel->setFilter(u"amplifier negative"_qs));
    EXPECT_EQ(shownTitles(), QStringList());
}

TEST_F(PPropertyGroupPanelTest, matches_what_has_no_title_by_the_title_of_the_group) {
    EXPECT_TRUE(panel->setFilter(u"cool"_qs));
    EXPECT_TRUE(own->isVisible());
    EXPECT_EQ(shownTitles(), QStringList());
}

TEST_F(PPropertyGroupPanelTest, matches_what_a_panel_of_its_own_shows_now) {
    EXPECT_TRUE(panel->setFilter(u"OWN"_qs));
    EXPECT_TRUE(own->isVisible());
    EXPECT_EQ(shownTitles(), QStringList());
    own->setText(u"Current temperature:"_qs);
    EXPECT_FALSE(panel->setFilter(u"own"_qs));
    EXPECT_TRUE(panel->setFilter(u"temperature"_qs));
    EXPECT_TRUE(own->isVisible());
}

TEST_F(PPropertyGroupPanelTest, matches_what_editors_show_but_not_their_ranges) {
    FakeChoice binning("bin", u"Binning"_qs, {u"Average 2x2"_qs});
    binning.updateValueFromDevice();
    PPropertyGroupPanel group(u"Group"_qs, {&binning, &gain});
    EXPECT_TRUE(group.setFilter(u"average"_qs));
    EXPECT_FALSE(group.setFilter(u"range"_qs));
}

TEST_F(PPropertyGroupPanelTest, outlives_a_panel_of_its_own) {
    delete own;
    EXPECT_FALSE(panel->setFilter(u"own"_qs));
}

TEST_F(PPropertyGroupPanelTest, shows_all_again_without_a_filter) {
    panel->setFilter(u"nothing has this"_qs);
    EXPECT_TRUE(panel->setFilter(QString()));
    EXPECT_EQ(shownTitles().size(), 3);
    EXPECT_TRUE(own->isVisible());
}

TEST_F(PPropertyGroupPanelTest, switches_by_a_click_on_the_title) {
    QTest::mouseClick(panel->findChildren<PPropertyLabel*>().at(0), Qt::LeftButton);
    QCoreApplication::processEvents();
    EXPECT_EQ(negative.sets, QList<bool>({true}));
}

TEST_F(PPropertyGroupPanelTest, says_which_setting_was_refused_by_its_own_title_or_the_group_s) {
    FakeSwitch untitled("untitled", QString());
    PPropertyGroupPanel group(u"Fan"_qs, {&negative, &untitled});
    const QSignalSpy refused(&group, &PPropertyGroupPanel::refused);
    for (FakeSwitch* setting : {&negative, &untitled}) {
        setting->updateValueFromDevice();
        setting->refuses = true;
    }
    for (QCheckBox* box : group.findChildren<QCheckBox*>()) {
        box->click();
        QCoreApplication::processEvents();
    }
    ASSERT_EQ(refused.size(), 2);
    EXPECT_EQ(refused[0], QVariantList({u"Negative"_qs, u"off"_qs}));
    EXPECT_EQ(refused[1], QVariantList({u"Fan"_qs, u"off"_qs}));
}

TEST_F(PPropertyGroupPanelTest, gives_the_focus_by_a_click_on_the_title) {
    QTest::mouseClick(panel->findChildren<PPropertyLabel*>().at(1), Qt::LeftButton);
    EXPECT_EQ(QApplication::focusWidget(), panel->findChild<PNumberField*>());
}

TEST_F(PPropertyGroupPanelTest, opens_the_editor_s_menu_over_the_title) {
    PPropertyLabel* const title = panel->findChildren<PPropertyLabel*>().at(1);
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(2, 2), title->mapToGlobal(QPoint()));
    QApplication::sendEvent(title, &event);
    QWidget* const menu = QApplication::activePopupWidget();
    ASSERT_NE(menu, nullptr);
    EXPECT_NE(menu->findChild<QAction*>(u"reset"_qs), nullptr);
    delete menu;
}

TEST_F(PPropertyGroupPanelTest, aligns_titles_with_those_of_another_panel) {
    const int natural = panel->titleWidth();
    EXPECT_GT(natural, 0);
    panel->setTitleWidth(natural + 50);
    QCoreApplication::processEvents();
    for (const QLabel* title : panel->findChildren<PPropertyLabel*>())
        EXPECT_EQ(title->width(), natural + 50);
}

TEST(PPropertyGroupPanel, outlives_its_properties_with_the_titles_disabled) {
    PCdGui::install();
    auto gain = std::make_unique<FakeSwitch>("negative");
    PPropertyGroupPanel panel(u"Color"_qs, {gain.get()});
    gain.reset();
    EXPECT_FALSE(panel.findChild<PPropertyLabel*>()->isEnabled());
    EXPECT_TRUE(panel.setFilter(u"neg"_qs));
}
