// SPDX-License-Identifier: MIT
#include <apps/common/record/PSeriesWriter.h>

#include <apps/common/record/PFrameRecorder.h>

#include <apps/common/TestFrames.h>
#include <apps/common/reading/TiffReadBack.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>

#include <QDir>
#include <QImage>

namespace {

using Kind = PFrameSink::Kind;

PDeviceFrame frame(int width = 64) {
    PDeviceFrame made;
    EXPECT_TRUE(made.image.create(width, 16, PDIP::ColorFormat::Bgr));
    const PDIP::ImageRawData data = made.image.rawData(PDIP::AccessMode::Write);
    std::fill_n(data.data(), data.size(), static_cast<unsigned char>(90));
    return made;
}

class PSeriesWriterTest : public FolderTest {
protected:
    std::unique_ptr<PSeriesWriter> writer(std::optional<double> pixelSizeUm = std::nullopt) const {
        PFileSequence series;
        EXPECT_TRUE(series.setPattern(path(u"f-#.png"_qs)).isOk());
        PCameraIdentity camera;
        camera.id = u"cam-1"_qs;
        return std::make_unique<PSeriesWriter>(series, camera, pixelSizeUm);
    }
    QStringList saved() const {
        return QDir(path(QString())).entryList({u"*.png*"_qs}, QDir::Files, QDir::Name);
    }
};

TEST_F(PSeriesWriterTest, saves_each_frame_under_its_number_with_its_camera) {
    const auto files = writer(2.5);
    EXPECT_TRUE(files->write(frame(64), 1).isOk());
    EXPECT_TRUE(files->write(frame(65), 12).isOk());
    EXPECT_TRUE(files->finish({}).isOk());
    EXPECT_EQ(saved(), QStringList({u"f-1.png"_qs, u"f-12.png"_qs}));
    const QImage second(path(u"f-12.png"_qs));
    EXPECT_EQ(second.width(), 65);
    EXPECT_EQ(second.text(u"Camera"_qs), u"cam-1"_qs);
    EXPECT_EQ(second.dotsPerMeterX(), 400'000);
}

TEST_F(PSeriesWriterTest, a_file_that_exists_is_left_alone_and_named) {
    writeFile(path(u"f-2.png"_qs), "mine");
    const PStatus status = writer()->write(frame(), 2);
    EXPECT_FALSE(status.isOk());
    EXPECT_TRUE(status.reason().contains(path(u"f-2.png"_qs))) << status.reason().toStdString();
    EXPECT_EQ(readFile(path(u"f-2.png"_qs)), QByteArray("mine"));
    EXPECT_EQ(saved(), QStringList{u"f-2.png"_qs});
}

TEST_F(PSeriesWriterTest, the_format_of_the_camera_decides_about_colour_not_what_it_shows) {
    for (const char* pattern : {"f-#.png", "f-#.tif"}) {
        PFileSequence series;
        ASSERT_TRUE(series.setPattern(path(QString::fromLatin1(pattern))).isOk());
        PSeriesWriter files(series, {});
        for (quint64 number : {1U, 2U}) {
            const auto format = number == 1 ? PDIP::ColorFormat::Bgr : PDIP::ColorFormat::Gray;
            ASSERT_TRUE(files.write(testFrame(90, {}, makeSettings({}), format), number).isOk());
        }
    }
    EXPECT_FALSE(QImage(path(u"f-1.png"_qs)).format() == QImage::Format_Grayscale8);
    EXPECT_EQ(QImage(path(u"f-2.png"_qs)).format(), QImage::Format_Grayscale8);
    EXPECT_EQ(TiffReadBack(path(u"f-1.tif"_qs)).field(TIFFTAG_SAMPLESPERPIXEL), 3);
    EXPECT_EQ(TiffReadBack(path(u"f-2.tif"_qs)).field(TIFFTAG_SAMPLESPERPIXEL), 1);
}

TEST_F(PSeriesWriterTest, a_recorder_saves_a_series_with_all_its_threads) {
    {
        PFrameRecorder recorder(writer(), {});
        for (int i = 0; i < 20; ++i)
            EXPECT_TRUE(recorder.takeFrame(frame(64 + i), Kind::Live));
    }
    ASSERT_EQ(saved().size(), 20);
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(QImage(path(u"f-%1.png"_qs.arg(i + 1))).width(), 64 + i);
}

TEST_F(PSeriesWriterTest, after_a_file_that_cannot_be_saved_a_recorder_begins_no_other) {
    writeFile(path(u"f-2.png"_qs), "mine");
    PFrameRecorder recorder(writer(), {});
    recorder.takeFrame(frame(), Kind::Live);
    recorder.takeFrame(frame(), Kind::Live);
    recorder.end(std::nullopt, {});
    ASSERT_TRUE(recorder.waitUntilFinished(longestFrameWait));
    recorder.takeFrame(frame(), Kind::Live);
    const PFrameRecorder::Progress progress = recorder.progress();
    EXPECT_EQ(progress.tally.written, 1U);
    EXPECT_EQ(progress.tally.failed, 1U);
    EXPECT_TRUE(progress.error.contains(path(u"f-2.png"_qs))) << progress.error.toStdString();
    EXPECT_EQ(saved(), QStringList({u"f-1.png"_qs, u"f-2.png"_qs}));
}

} // namespace
