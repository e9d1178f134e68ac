// SPDX-License-Identifier: MIT
#include <apps/pcdview/hang/PHangWindow.h>

#include <support/QtPrinters.h>
#include <support/WaitUntil.h>

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace {

/// A window that is shown, for a viewer that takes nearly ten seconds to end.
class PHangWindowTest : public testing::Test {
protected:
    PHangWindowTest() {
        window.setCall({u"Camera_open(\"<b>a</b>\", 6)"_qs, 12'500ms, false});
        window.show();
    }

    QString text(const char* label) const {
        const auto* const found = window.findChild<QLabel*>(QString::fromLatin1(label));
        return found == nullptr ? QString() : found->text();
    }
    QPushButton* button(const char* name) const {
        return window.findChild<QPushButton*>(QString::fromLatin1(name));
    }
    void click(const char* name) {
        ASSERT_NE(button(name), nullptr);
        QTest::mouseClick(button(name), Qt::LeftButton);
    }

    PHangWindow window{9'500ms};
    const QSignalSpy ends{&window, &PHangWindow::endRequested};
    const QSignalSpy finished{&window, &QDialog::finished};
};

} // namespace

TEST_F(PHangWindowTest, names_the_call_with_its_arguments_as_they_are) {
    EXPECT_EQ(text("call"), u"Camera_open(\"<b>a</b>\", 6)"_qs);
    const auto* const label = window.findChild<QLabel*>(u"call"_qs);
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(label->textFormat(), Qt::PlainText);
}

TEST_F(PHangWindowTest, counts_the_time_up) {
    EXPECT_EQ(text("time"), u"So far it has taken 12 s."_qs);
    EXPECT_TRUE(waitUntil([this] { return text("time") != u"So far it has taken 12 s."_qs; }));
}

TEST_F(PHangWindowTest, shows_minutes_and_hours) {
    window.setCall({u"Camera_open()"_qs, 60'000ms, false});
    EXPECT_EQ(text("time"), u"So far it has taken 1 min 0 s."_qs);
    window.setCall({u"Camera_open()"_qs, 2h + 3min + 4s, false});
    EXPECT_EQ(text("time"), u"So far it has taken 2 h 3 min."_qs);
}

TEST_F(PHangWindowTest, shows_the_next_call_in_place_of_the_last_one) {
    window.setCall({u"Camera_close(1)"_qs, 800ms, false});
    EXPECT_EQ(text("call"), u"Camera_close(1)"_qs);
    EXPECT_EQ(text("time"), u"So far it has taken 0 s."_qs);
}

TEST_F(PHangWindowTest, a_user_who_waits_closes_it_and_ends_nothing) {
    click("wait");
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(finished.size(), 1);
    EXPECT_TRUE(ends.isEmpty());
}

TEST_F(PHangWindowTest, enter_and_escape_wait) {
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
        window.show();
        QTest::keyClick(&window, key);
        EXPECT_FALSE(window.isVisible()) << key;
        EXPECT_TRUE(ends.isEmpty()) << key;
    }
}

TEST_F(PHangWindowTest, a_user_who_ends_the_viewer_sees_how_long_that_takes) {
    EXPECT_EQ(text("heading"), u"The camera does not answer"_qs);
    click("end");
    EXPECT_EQ(ends.size(), 1);
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(text("heading"), u"pcdview is ending"_qs);
    EXPECT_TRUE(text("advice").contains(u"does not return within 10 s"_qs))
        << text("advice").toStdString();
    EXPECT_TRUE(waitUntil([this] { return !text("advice").contains(u"within 10 s"_qs); }));
}

TEST_F(PHangWindowTest, a_user_who_ends_the_viewer_once_more_ends_it_at_once) {
    click("end");
    EXPECT_EQ(button("end")->text(), u"&End at once"_qs);
    click("end");
    EXPECT_EQ(ends.size(), 2);
    EXPECT_TRUE(finished.isEmpty());
}

TEST(PHangWindow, says_that_files_are_being_completed_when_the_time_is_over) {
    PHangWindow window(0s);
    window.setCall({u"Camera_open()"_qs, 12s, false});
    auto* const end = window.findChild<QPushButton*>(u"end"_qs);
    const auto* const advice = window.findChild<QLabel*>(u"advice"_qs);
    ASSERT_NE(end, nullptr);
    ASSERT_NE(advice, nullptr);
    end->click();
    EXPECT_TRUE(advice->text().startsWith(u"Recordings and pictures are being completed;"_qs))
        << advice->text().toStdString();
}
