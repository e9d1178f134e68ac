// SPDX-License-Identifier: MIT
#include <PCdGui/PPropertyGroupPanel.h>

#include <PCdGui/PCdGui.h>
#include <PCdGui/PPropertyEditor.h>
#include <PCdGui/PPropertyLabel.h>
#include <PCdGui/TypedProperties.h>

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
        gain.setDescription(QStringLiteral("Of the amplifier."));
        panel = std::make_unique<PPropertyGroupPanel>(
            QStringLiteral("Cooling"),
            QList<PDeviceProperty*>{&negative, &gain, &once, &composite});
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

    FakeSwitch negative{"negative", QStringLiteral("Negative")};
    FakeNumber gain{"expogain", QStringLiteral("Gain"), {0, 500, 1}, 100};
    FakeAction once{"awbonce", QStringLiteral("Balance")};
    QLabel* own = nullptr;
    FakeComposite composite{"tec", [this] { return own = new QLabel(QStringLiteral("own")); }};
    std::unique_ptr<PPropertyGroupPanel> panel;
};

} // namespace

TEST_F(PPropertyGroupPanelTest, has_a_title_and_an_editor_a_row) {
    EXPECT_EQ(panel->title(), QStringLiteral("Cooling"));
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
    EXPECT_TRUE(panel->setFilter(QStringLiteral("neg")));
    EXPECT_EQ(shownTitles(), list("Negative"));
    EXPECT_FALSE(own->isVisible());
}

TEST_F(PPropertyGroupPanelTest, matches_title_id_and_description_with_all_words_in_any_case) {
    EXPECT_TRUE(panel->setFilter(QStringLiteral(" AMPLIFIER  expo ")));
    EXPECT_EQ(shownTitles(), list("Gain"));
    EXPECT_FALSE(panel->setFilter(QStringLiteral("amplifier negative")));
    EXPECT_EQ(shownTitles(), QStringList());
}

TEST_F(PPropertyGroupPanelTest, matches_what_has_no_title_by_the_title_of_the_group) {
    EXPECT_TRUE(panel->setFilter(QStringLiteral("cool")));
    EXPECT_TRUE(own->isVisible());
    EXPECT_EQ(shownTitles(), QStringList());
}

TEST_F(PPropertyGroupPanelTest, matches_what_a_panel_of_its_own_shows_at_the_moment) {
    EXPECT_TRUE(panel->setFilter(QStringLiteral("OWN")));
    EXPECT_TRUE(own->isVisible());
    EXPECT_EQ(shownTitles(), QStringList());
    own->setText(QStringLiteral("Current temperature:"));
    EXPECT_FALSE(panel->setFilter(QStringLiteral("own")));
    EXPECT_TRUE(panel->setFilter(QStringLiteral("temperature")));
    EXPECT_TRUE(own->isVisible());
}

TEST_F(PPropertyGroupPanelTest, matches_what_editors_show_but_not_their_ranges) {
    FakeChoice binning("bin", QStringLiteral("Binning"), {QStringLiteral("Average 2x2")});
    binning.updateValueFromDevice();
    PPropertyGroupPanel group(QStringLiteral("Group"), {&binning, &gain});
    EXPECT_TRUE(group.setFilter(QStringLiteral("average")));
    EXPECT_FALSE(group.setFilter(QStringLiteral("range")));
}

TEST_F(PPropertyGroupPanelTest, outlives_a_panel_of_its_own) {
    delete own;
    EXPECT_FALSE(panel->setFilter(QStringLiteral("own")));
}

TEST_F(PPropertyGroupPanelTest, shows_all_again_without_a_filter) {
    panel->setFilter(QStringLiteral("nothing has this"));
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
    PPropertyGroupPanel group(QStringLiteral("Fan"), {&negative, &untitled});
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
    EXPECT_EQ(refused[0], QVariantList({QStringLiteral("Negative"), QStringLiteral("off")}));
    EXPECT_EQ(refused[1], QVariantList({QStringLiteral("Fan"), QStringLiteral("off")}));
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
    EXPECT_NE(menu->findChild<QAction*>(QStringLiteral("reset")), nullptr);
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
    PPropertyGroupPanel panel(QStringLiteral("Color"), {gain.get()});
    gain.reset();
    EXPECT_FALSE(panel.findChild<PPropertyLabel*>()->isEnabled());
    EXPECT_TRUE(panel.setFilter(QStringLiteral("neg")));
}
