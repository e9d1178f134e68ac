// SPDX-License-Identifier: MIT
#include <PCdGui/text/PShownWords.h>

#include <PCdGui/Words.h>
#include <support/QtPrinters.h>

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStackedWidget>
#include <QTabWidget>

#include <gtest/gtest.h>

namespace {

class PShownWordsTest : public testing::Test {
protected:
    bool isShown(const char* text) const {
        return PShownWords::on(panel).split(u'\n').contains(words(text));
    }

    QWidget panel;
};

} // namespace

TEST_F(PShownWordsTest, are_the_texts_of_labels_buttons_boxes_and_tabs) {
    new QLabel(words("Current temperature:"), &panel);
    new QCheckBox(words("Fan enable"), &panel);
    new QPushButton(words("Run once"), &panel);
    new QGroupBox(words("Cooler"), &panel);
    (new QComboBox(&panel))->addItems({words("Software"), words("External")});
    (new QTabWidget(&panel))->addTab(new QLabel(words("50 Hz")), words("Mains"));
    for (const char* text : {"Current temperature:", "Fan enable", "Run once", "Cooler", "Software",
                             "External", "50 Hz", "Mains"})
        EXPECT_TRUE(isShown(text)) << text;
}

TEST_F(PShownWordsTest, are_the_tool_tips_as_they_read) {
    auto* const field = new QLineEdit(&panel);
    field->setToolTip(words("<p>Slow &amp; <b>quiet</b></p>"));
    panel.setToolTip(words("Of the whole panel"));
    EXPECT_TRUE(isShown("Slow & quiet"));
    EXPECT_TRUE(isShown("Of the whole panel"));
    EXPECT_EQ(PShownWords::inside(panel), words("Slow & quiet"));
}

TEST_F(PShownWordsTest, have_no_marks_of_shortcuts) {
    new QCheckBox(words("Gain && o&ffset"), &panel);
    auto* const label = new QLabel(words("&Target"), &panel);
    label->setBuddy(new QLineEdit(&panel));
    new QLabel(words("R&D"), &panel);
    EXPECT_TRUE(isShown("Gain & offset"));
    EXPECT_TRUE(isShown("Target"));
    EXPECT_TRUE(isShown("R&D"));
}

TEST_F(PShownWordsTest, have_no_tags_of_rich_text) {
    new QLabel(words("<b>Black</b> level"), &panel);
    auto* const plain = new QLabel(words("<b>"), &panel);
    plain->setTextFormat(Qt::PlainText);
    EXPECT_TRUE(isShown("Black level"));
    EXPECT_TRUE(isShown("<b>"));
}

TEST_F(PShownWordsTest, are_on_the_page_behind_but_not_on_what_is_hidden) {
    auto* const pages = new QStackedWidget(&panel);
    pages->addWidget(new QLabel(words("In front")));
    pages->addWidget(new QLabel(words("Behind")));
    (new QLabel(words("Hidden"), &panel))->hide();
    auto* const window = new QWidget(&panel, Qt::Window);
    new QLabel(words("In another window"), window);
    panel.show();
    window->show();
    EXPECT_TRUE(isShown("In front"));
    EXPECT_TRUE(isShown("Behind"));
    EXPECT_FALSE(isShown("Hidden"));
    EXPECT_FALSE(isShown("In another window"));
}

TEST_F(PShownWordsTest, are_not_the_accessible_names) {
    (new QPushButton(words("VIDEO"), &panel))->setAccessibleName(words("nav"));
    EXPECT_FALSE(PShownWords::on(panel).contains(words("nav")));
}
