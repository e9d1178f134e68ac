// SPDX-License-Identifier: MIT
// The window on a small screen. With PCD_SCREENSHOTS=<folder> pictures are saved there as
// small-<language>-<page>.
#include <apps/pcdview/window/ViewSession.h>

#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/window/camera/PCameraTabs.h>
#include <apps/pcdview/window/camera/PMessageBar.h>
#include <apps/pcdview/window/main/PMainWindow.h>
#include <apps/pcdview/window/panels/PRecordPanel.h>

#include <PGui/PColumnScroll.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <QAction>
#include <QComboBox>
#include <QDir>
#include <QDockWidget>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>
#include <QToolBar>

namespace {

const QSize smallScreen(1024, 700);

/// A window in the language of the row.
class WindowSizeTest : public ViewSession, public WithRow<const char*> {
public:
    static std::string toRowName(const char* const& row) { return row; }

protected:
    void SetUp() override {
        QJsonObject first = camera(u"cam-1"_qs, u"SIM20C0001"_qs);
        first.insert(u"model"_qs, u"Simulated-20MC"_qs);
        first.insert(u"flags"_qs,
                     QJsonArray{u"USB30"_qs, u"TEC_ONOFF"_qs, u"FAN"_qs, u"TRIGGER_SOFTWARE"_qs});
        start({first, camera(u"cam-2"_qs, u"S0002"_qs)},
              {u"--lang"_qs, QString::fromLatin1(GetParam()), u"--theme"_qs, u"light"_qs});
        ASSERT_TRUE(cameraTabs().open(u"Small-S0002"_qs).isOk());
        ASSERT_TRUE(cameraTabs().open(u"Simulated-20MC-SIM20C0001"_qs).isOk());
        window().resize(smallScreen);
        ASSERT_TRUE(waitForNewFrames());
        // What the status bar shows for a live camera.
        ASSERT_TRUE(waitUntil([this] {
            return inFront().framesPerSecond() > 1 &&
                   !widget<QLabel>(u"size"_qs).text().isEmpty() &&
                   widget<QLabel>(u"mean"_qs).text().contains(u"G "_qs);
        }));
    }

    void expectAllFits(const QString& page) {
        const QStringList cut = cutOff();
        EXPECT_EQ(window().size(), smallScreen);
        EXPECT_LE(window().minimumSizeHint().width(), smallScreen.width());
        EXPECT_LE(window().minimumSizeHint().height(), smallScreen.height());
        EXPECT_TRUE(cut.isEmpty()) << cut.join(u'\n').toStdString();
        for (const auto* column : window().findChildren<PColumnScroll*>())
            EXPECT_LE(column->widget()->width(), column->viewport()->width());
        const auto* const bar = window().findChild<QToolBar*>();
        EXPECT_GE(bar->width(), bar->sizeHint().width()); // none of its buttons is moved to a menu
        save(page);
    }

    void save(const QString& page) {
        const QString folder = qEnvironmentVariable("PCD_SCREENSHOTS");
        if (folder.isEmpty())
            return;
        const QString name = u"small-%1-%2.png"_qs.arg(QString::fromLatin1(GetParam()), page);
        EXPECT_TRUE(window().grab().save(QDir(folder).filePath(name)));
    }

    void record() { QTest::keyClick(&window(), Qt::Key_R, Qt::ControlModifier); }
    /// Three lines for each recording: the camera, the frames and the time left.
    bool waitForProgress(int recordings) {
        const auto& text = widget<QLabel>(u"recordText"_qs);
        return waitUntil([&] { return text.text().count(u'\n') + 1 == 3 * recordings; });
    }
    bool isProgressSeen() {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
        return isSeen(u"recordButton"_qs) && isSeen(u"recordBar"_qs) && isSeen(u"recordText"_qs);
    }
    /// True if the whole widget is visible to the user.
    bool isSeen(const QString& name) {
        const auto& shown = widget<QWidget>(name);
        return shown.isVisible() && shown.visibleRegion() == QRegion(shown.rect());
    }

    PMessageBar& messages() { return *window().findChild<PMessageBar*>(); }
};

} // namespace

ROW_TEST(WindowSizeTest, fits_with_the_video_page) {
    expectAllFits(u"video"_qs);
}

ROW_TEST(WindowSizeTest, fits_with_the_trigger_page) {
    widget<QPushButton>(u"pbTrigger"_qs).click();
    ASSERT_TRUE(waitUntil([this] { return inFront().isTriggered(); }));
    expectAllFits(u"trigger"_qs);
}

ROW_TEST(WindowSizeTest, fits_with_the_last_of_the_settings) {
    auto* const column = widget<QDockWidget>(u"settingsDock"_qs).findChild<PColumnScroll*>();
    ASSERT_NE(column, nullptr);
    column->ensureVisible(0, column->widget()->height());
    widget<QDockWidget>(u"framesDock"_qs).raise();
    expectAllFits(u"last"_qs);
}

ROW_TEST(WindowSizeTest, fits_while_it_records) {
    widget<QComboBox>(u"recordEnd"_qs).setCurrentIndex(2);
    widget<QAction>(u"record"_qs).trigger();
    ASSERT_TRUE(waitUntil([this] { return !widget<QLabel>(u"recordText"_qs).text().isEmpty(); }));
    expectAllFits(u"recording"_qs);
}

ROW_TEST(WindowSizeTest, shows_the_progress_of_recordings_without_scrolling) {
    auto* const column = widget<QDockWidget>(u"recordDock"_qs).findChild<PColumnScroll*>();
    ASSERT_NE(column, nullptr);
    widget<QSpinBox>(u"recordFrames"_qs).setValue(1000);
    widget<QDockWidget>(u"framesDock"_qs).raise();
    record();
    ASSERT_TRUE(waitForProgress(1));
    EXPECT_TRUE(isProgressSeen());
    expectAllFits(u"progress"_qs);

    column->ensureVisible(0, column->widget()->height());
    ASSERT_FALSE(isProgressSeen());
    ASSERT_TRUE(cameraTabs().open(u"Small-S0002"_qs).isOk());
    record();
    ASSERT_TRUE(waitForProgress(2));
    EXPECT_TRUE(isProgressSeen());
}

ROW_TEST(WindowSizeTest, shows_all_of_the_messages_about_recordings_without_moving_the_picture) {
    const QRect picture = cameraTabs().geometry();
    auto& panel = *window().findChild<PRecordPanel*>();
    const auto& text = widget<QLabel>(u"recordText"_qs);
    for (const QString& camera : {u"Simulated-20MC-SIM20C0001"_qs, u"Small-S0002"_qs}) {
        panel.showMessage(camera, u"Recorded 50 frames: /home/user/Pictures/pcdview/"
                                  "%1_2026-11-22_09-11-51-536.ome.tif"_qs.arg(camera));
        EXPECT_TRUE(waitUntil([&] { return text.height() >= text.heightForWidth(text.width()); }))
            << text.height() << " of " << text.heightForWidth(text.width());
    }
    // Its right edge follows the settings, which may still be changing with automatic exposure.
    EXPECT_EQ(cameraTabs().geometry().topLeft(), picture.topLeft());
    EXPECT_EQ(cameraTabs().height(), picture.height());
    expectAllFits(u"recorded"_qs);
}

ROW_TEST(WindowSizeTest, shows_all_of_the_text_after_two_recordings) {
    const auto& text = widget<QLabel>(u"recordText"_qs);
    widget<QSpinBox>(u"recordFrames"_qs).setValue(3);
    for (const char* const camera : {"Small-S0002", "Simulated-20MC-SIM20C0001"}) {
        ASSERT_TRUE(cameraTabs().open(QString::fromLatin1(camera)).isOk());
        record();
        ASSERT_TRUE(waitUntil([this] { return !widget<QAction>(u"record"_qs).isChecked(); }));
    }
    EXPECT_TRUE(waitUntil([&] { return text.height() >= text.heightForWidth(text.width()); }))
        << text.height() << " of " << text.heightForWidth(text.width());
    expectAllFits(u"two-recorded"_qs);
}

ROW_TEST(WindowSizeTest, leaves_a_recording_panel_that_was_closed_closed) {
    auto& dock = widget<QDockWidget>(u"recordDock"_qs);
    dock.close();
    record();
    EXPECT_TRUE(widget<QAction>(u"record"_qs).isChecked());
    EXPECT_FALSE(dock.isVisible());
}

ROW_TEST(WindowSizeTest, fits_with_a_long_message_which_is_the_tool_tip_in_full) {
    const QString message = u"Saved /home/user/%1/picture.png"_qs.arg(QString(200, u'x'));
    messages().showMessage(message);
    expectAllFits(u"message"_qs);
    EXPECT_EQ(messages().toolTip(), message);
    EXPECT_TRUE(messages().fittingMessage().startsWith(u"Saved"_qs));
    EXPECT_TRUE(messages().fittingMessage().endsWith(u"picture.png"_qs));
    messages().clearMessage();
    EXPECT_EQ(messages().toolTip(), QString());
}

ROWS(Languages, WindowSizeTest, "en", "ru");
