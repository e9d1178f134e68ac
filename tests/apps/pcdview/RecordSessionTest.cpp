// SPDX-License-Identifier: MIT
// Recording in the viewer as a person does it, on simulated cameras.
#include "ViewSession.h"

#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/window/PMainWindow.h>

#include <support/QtPrinters.h>

#include <QAction>
#include <QComboBox>
#include <QDir>
#include <QImageReader>
#include <QLabel>
#include <QPushButton>
#include <QScopeGuard>
#include <QSpinBox>
#include <QTest>

#include <csignal>
#include <sys/resource.h>

namespace {

class RecordSessionTest : public ViewSession {
protected:
    void SetUp() override {
        start({camera()});
        ASSERT_TRUE(waitForNewFrames());
    }

    void pressButton() {
        QTest::mouseClick(&widget<QPushButton>(u"recordButton"_qs), Qt::LeftButton);
    }
    QString text() { return widget<QLabel>(u"recordText"_qs).text(); }
    bool isRecording() { return widget<QAction>(u"record"_qs).isChecked(); }
    bool waitForText(const QString& part) {
        return waitUntil([&] { return !isRecording() && text().contains(part); });
    }
    int written() { return text().section(u' ', 1, 1).remove(u',').toInt(); }

    /// The one file or folder that was recorded.
    QString recorded() const {
        const QDir folder(captureFolder());
        const QStringList names = folder.entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
        EXPECT_EQ(names.size(), 1) << names.join(u' ').toStdString();
        return folder.filePath(names.value(0));
    }
};

} // namespace

TEST_F(RecordSessionTest, fifty_frames_go_into_one_file_while_the_live_picture_goes_on) {
    pressButton();
    EXPECT_TRUE(isRecording());
    const quint64 before = inFront().frame().stamp->sequence;
    ASSERT_TRUE(waitForText(u"Recorded 50 frames"_qs)) << text().toStdString();
    EXPECT_GT(inFront().frame().stamp->sequence, before);
    EXPECT_TRUE(recorded().endsWith(u".ome.tif"_qs));
    QImageReader reader(recorded());
    EXPECT_EQ(reader.imageCount(), 50);
    EXPECT_EQ(reader.read().size(), QSize(320, 240));
}

TEST_F(RecordSessionTest, a_series_has_a_folder_of_its_own) {
    widget<QSpinBox>(u"recordFrames"_qs).setValue(5);
    widget<QComboBox>(u"recordFormat"_qs).setCurrentIndex(2);
    pressButton();
    ASSERT_TRUE(waitForText(u"Recorded 5 frames"_qs)) << text().toStdString();
    const QStringList files = QDir(recorded()).entryList(QDir::Files);
    EXPECT_EQ(files.size(), 5);
    EXPECT_EQ(files.first(), u"frame-000001.png"_qs);
}

TEST_F(RecordSessionTest, stopping_keeps_what_was_taken) {
    widget<QComboBox>(u"recordEnd"_qs).setCurrentIndex(2);
    pressButton();
    ASSERT_TRUE(waitUntil([this] { return written() >= 5; }));
    pressButton();
    ASSERT_TRUE(waitForText(u"Recorded"_qs)) << text().toStdString();
    EXPECT_GE(QImageReader(recorded()).imageCount(), 5);
}

TEST_F(RecordSessionTest, unplugging_ends_it_with_a_whole_file) {
    widget<QComboBox>(u"recordEnd"_qs).setCurrentIndex(2);
    pressButton();
    ASSERT_TRUE(waitUntil([this] { return written() >= 5; }));
    ASSERT_TRUE(unplug("cam-1"));
    ASSERT_TRUE(waitForText(u"unplugged"_qs)) << text().toStdString();
    EXPECT_GE(QImageReader(recorded()).imageCount(), 5);
}

TEST_F(RecordSessionTest, a_full_disk_ends_it_with_the_reason) {
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    rlimit small = before;
    small.rlim_cur = 2'000'000; // eight frames, then no more
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &small);
    const auto restore = qScopeGuard([&] {
        setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, handler);
    });
    pressButton();
    ASSERT_TRUE(waitForText(u"ended early"_qs)) << text().toStdString();
    EXPECT_TRUE(text().contains(u".ome.tif"_qs)) << text().toStdString();
    EXPECT_GE(QImageReader(recorded()).imageCount(), 1);
    EXPECT_EQ(inFront().state(), PViewCamera::State::Live);
    EXPECT_TRUE(waitForNewFrames());
}

TEST_F(RecordSessionTest, closing_unasked_completes_the_file) {
    widget<QComboBox>(u"recordEnd"_qs).setCurrentIndex(2);
    pressButton();
    ASSERT_TRUE(waitUntil([this] { return written() >= 5; }));
    window().closeUnasked();
    EXPECT_FALSE(window().isVisible());
    end();
    EXPECT_GE(QImageReader(recorded()).imageCount(), 5);
    const QByteArray file = readFile(recorded());
    EXPECT_TRUE(file.contains("the program was closed"));
}
