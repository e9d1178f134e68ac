// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/panels/PRecordPanel.h>

#include <apps/pcdview/window/FakeCameras.h>

#include <PGui/PColumnScroll.h>
#include <PGui/WidgetHands.h>

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QScrollBar>

namespace {

/// The panel in a dock that is too low for it.
class PRecordPanelTest : public FakeCameras {
protected:
    PRecordPanelTest() {
        PRecordSettings settings;
        settings.end = PRecordSettings::End::AfterTime;
        settings.isTimeLapse = true;
        settings.remember();
        panel = new PRecordPanel(recordings);
        scroll.setWidget(panel);
        scroll.resize(scroll.minimumSizeHint().width(), 60);
    }
    QList<QWidget*> fields() const {
        QList<QWidget*> fields;
        for (QComboBox* box : panel->findChildren<QComboBox*>())
            fields.append(box);
        for (QAbstractSpinBox* field : panel->findChildren<QAbstractSpinBox*>())
            fields.append(field);
        return fields;
    }

    PRecordPanel* panel; // the scroll area's
    PColumnScroll scroll;
};

} // namespace

TEST_F(PRecordPanelTest, the_wheel_scrolls_and_changes_no_field_without_the_focus) {
    ASSERT_TRUE(showActive(&scroll));
    const PRecordSettings before = panel->settings();
    ASSERT_EQ(fields().size(), 5);
    for (QWidget* field : fields()) {
        scroll.verticalScrollBar()->setValue(0);
        if (QWidget* const focused = QApplication::focusWidget())
            focused->clearFocus();
        turnWheel(field, -1);
        EXPECT_GT(scroll.verticalScrollBar()->value(), 0) << field->metaObject()->className();
        EXPECT_FALSE(field->hasFocus());
    }
    const PRecordSettings after = panel->settings();
    EXPECT_EQ(after.end, before.end);
    EXPECT_EQ(after.frames, before.frames);
    EXPECT_EQ(after.seconds, before.seconds);
    EXPECT_EQ(after.intervalSeconds, before.intervalSeconds);
    EXPECT_EQ(after.format, before.format);
}

TEST_F(PRecordPanelTest, the_wheel_changes_the_field_with_the_focus) {
    ASSERT_TRUE(showActive(&scroll));
    auto* const end = panel->findChild<QComboBox*>(u"recordEnd"_qs);
    end->setFocus();
    turnWheel(end, -1);
    EXPECT_EQ(panel->settings().end, PRecordSettings::End::ByHand);
}

TEST_F(PRecordPanelTest, the_progress_is_that_of_written_frames) {
    PFrameRecorder::Progress progress;
    EXPECT_EQ(PRecordPanel::completedShare(progress), std::nullopt); // without a planned end
    progress.share = 0.0;
    EXPECT_EQ(PRecordPanel::completedShare(progress), 0.0);
    progress.share = 1.0; // 50 of 50 frames have arrived
    progress.tally.written = 30;
    progress.tally.waiting = 20;
    EXPECT_DOUBLE_EQ(*PRecordPanel::completedShare(progress), 0.6);
    progress.tally.written = 48;
    progress.tally.waiting = 0;
    progress.tally.failed = 2;
    EXPECT_EQ(PRecordPanel::completedShare(progress), 1.0);
}
