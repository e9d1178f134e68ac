// SPDX-License-Identifier: MIT
#include <apps/common/record/PFrameSaver.h>

#include <apps/common/picture/PPictureFile.h>

#include <apps/common/TestFrames.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>

#include <QDir>

#include <future>

namespace {

using Kind = PFrameSink::Kind;

PDeviceFrame frame(int width = 64) {
    PDeviceFrame made;
    EXPECT_TRUE(made.image.create(width, 16, PDIP::ColorFormat::Bgr));
    const PDIP::ImageRawData data = made.image.rawData(PDIP::AccessMode::Write);
    std::fill_n(data.data(), data.size(), static_cast<unsigned char>(90));
    return made;
}

PStatus savePicture(const QString& path, const PDeviceFrame& saved) {
    return PPictureFile::save(path, saved.image.toQImage(), {}, PPictureFile::Existing::Keep,
                              PPictureFile::Effort::Fast);
}

class FrameSaver : public FolderTest {
protected:
    PFileSequence files() const {
        PFileSequence series;
        EXPECT_TRUE(series.setPattern(path(u"f-#.png"_qs)).isOk());
        return series;
    }
    QStringList saved() const {
        return QDir(path(QString())).entryList({u"*.png*"_qs}, QDir::Files, QDir::Name);
    }
};

TEST_F(FrameSaver, saves_live_frames_in_the_order_they_came) {
    PFrameSaver saver(files(), savePicture);
    EXPECT_TRUE(saver.takeFrame(frame(64), Kind::Live));
    EXPECT_TRUE(saver.takeFrame(frame(65), Kind::Live));
    ASSERT_TRUE(saver.waitUntilIdle(longestFrameWait));
    EXPECT_EQ(QImage(path(u"f-1.png"_qs)).width(), 64);
    EXPECT_EQ(QImage(path(u"f-2.png"_qs)).width(), 65);
    EXPECT_EQ(saver.state().saved, 2U);
    EXPECT_EQ(saver.state().unsaved, 0U);
}

TEST_F(FrameSaver, leaves_snapshots_alone) {
    PFrameSaver saver(files(), savePicture);
    EXPECT_TRUE(saver.takeFrame(frame(), Kind::Snapshot));
    ASSERT_TRUE(saver.waitUntilIdle(longestFrameWait));
    EXPECT_EQ(saved(), QStringList());
}

TEST_F(FrameSaver, its_destructor_saves_what_waits) {
    {
        PFrameSaver saver(files(), savePicture);
        for (int i = 0; i < 20; ++i)
            EXPECT_TRUE(saver.takeFrame(frame(), Kind::Live));
    }
    EXPECT_EQ(saved().size(), 20);
}

TEST_F(FrameSaver, refuses_frames_beyond_its_limit_and_takes_them_again_later) {
    // The writers stand still, so that everything taken stays counted.
    std::promise<void> gate;
    const auto savePictureBehindGate =
        [open = gate.get_future().share()](const QString& path, const PDeviceFrame& saved) {
            open.wait();
            return savePicture(path, saved);
        };
    const std::size_t bytes = frame().image.dataSize();
    PFrameSaver saver(files(), savePictureBehindGate, 3 * bytes);
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(saver.takeFrame(frame(), Kind::Live));
    EXPECT_FALSE(saver.takeFrame(frame(), Kind::Live));
    EXPECT_EQ(saver.state().waiting, 3U);
    EXPECT_EQ(saver.state().unsaved, 1U);
    gate.set_value();
    ASSERT_TRUE(saver.waitUntilIdle(longestFrameWait));
    EXPECT_TRUE(saver.takeFrame(frame(), Kind::Live));
    ASSERT_TRUE(saver.waitUntilIdle(longestFrameWait));
    EXPECT_EQ(saver.state().saved, 4U);
    EXPECT_FALSE(QImage(path(u"f-4.png"_qs)).isNull()); // the refused one took no number
}

TEST_F(FrameSaver, takes_a_frame_larger_than_its_limit_if_nothing_waits) {
    PFrameSaver saver(files(), savePicture, 1);
    EXPECT_TRUE(saver.takeFrame(frame(), Kind::Live));
    ASSERT_TRUE(saver.waitUntilIdle(longestFrameWait));
    EXPECT_EQ(saver.state().saved, 1U);
}

TEST_F(FrameSaver, after_a_failure_saves_nothing_more_and_says_why) {
    writeFile(path(u"f-2.png"_qs), "mine");
    PFrameSaver saver(files(), savePicture);
    saver.takeFrame(frame(), Kind::Live);
    saver.takeFrame(frame(), Kind::Live);
    ASSERT_TRUE(saver.waitUntilIdle(longestFrameWait));
    EXPECT_FALSE(saver.takeFrame(frame(), Kind::Live));
    const PFrameSaver::State state = saver.state();
    EXPECT_EQ(state.saved, 1U);
    EXPECT_EQ(state.unsaved, 2U);
    EXPECT_TRUE(state.error.contains(path(u"f-2.png"_qs))) << state.error.toStdString();
    EXPECT_EQ(readFile(path(u"f-2.png"_qs)), QByteArray("mine"));
    EXPECT_EQ(saved(), QStringList({u"f-1.png"_qs, u"f-2.png"_qs}));
}

} // namespace
