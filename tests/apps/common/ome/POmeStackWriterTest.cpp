// SPDX-License-Identifier: MIT
#include <apps/common/ome/POmeStackWriter.h>

#include <apps/common/TestFrames.h>
#include <apps/common/reading/OmeXml.h>
#include <apps/common/reading/TiffReadBack.h>

#include <support/FileSizeLimit.h>
#include <support/FolderTest.h>
#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <limits>

namespace {

using namespace std::chrono_literals;

class OmeStackWriter : public FolderTest {
protected:
    POmeStackWriter::Options options{path(u"run.ome.tif"_qs),
                                     {u"Small-S0001"_qs, u"Small"_qs, u"S0001"_qs, true},
                                     {},
                                     std::nullopt,
                                     std::nullopt,
                                     std::nullopt};

    /// Writes frames 1, 2 … 10 ms apart.
    static void write(POmeStackWriter& writer, int frames) {
        for (int i = 1; i <= frames; ++i) {
            const PStatus status = writer.write(testFrame(quint64(i), 10ms * (i - 1)), quint64(i));
            ASSERT_TRUE(status.isOk()) << status.reason().toStdString();
        }
    }
    OmeXml xml() const { return OmeXml(TiffReadBack(options.path).description()); }
    /// The number of pictures in the file; each must have its own number in its pixels.
    int soundPictures() const {
        const TiffReadBack tiff(options.path);
        for (int i = 0; i < tiff.pictures(); ++i) {
            tiff.select(i);
            EXPECT_EQ(tiff.rows(), QByteArray(18, char(i + 1))) << i;
        }
        return tiff.pictures();
    }
};

TEST_F(OmeStackWriter, recognises_its_file_names) {
    EXPECT_TRUE(POmeStackWriter::isName(u"a.ome.tif"_qs));
    EXPECT_TRUE(POmeStackWriter::isName(u"A.OME.TIFF"_qs));
    EXPECT_FALSE(POmeStackWriter::isName(u"a.tif"_qs));
    EXPECT_FALSE(POmeStackWriter::isName(u"ome.tif"_qs));
}

TEST_F(OmeStackWriter, a_finished_file_describes_every_picture_in_it) {
    POmeStackWriter writer(options);
    write(writer, 3);
    PFrameLedger ledger;
    ledger.produced = 9;
    ASSERT_TRUE(writer.finish({{3, 3, 0, 0, 0, 0}, ledger, {}}).isOk());
    EXPECT_EQ(soundPictures(), 3);
    const OmeXml document = xml();
    EXPECT_EQ(document.complaints(), QString());
    EXPECT_EQ(document.attribute("Pixels", "SizeT"), u"3"_qs);
    ASSERT_EQ(document.elements("Plane").size(), 3);
    EXPECT_EQ(document.elements("Plane").at(2).attributes.value(u"DeltaT"_qs), u"0.02"_qs);
    EXPECT_EQ(document.text("AcquisitionDate"), u"2026-01-01T00:00:00.000Z"_qs);
    EXPECT_EQ(document.attribute("Image", "Name"), u"run.ome.tif"_qs);
    EXPECT_EQ(document.note(u"Simulated"_qs), u"yes"_qs);
    EXPECT_EQ(document.note(u"Complete"_qs), u"yes"_qs);
    EXPECT_EQ(document.note(u"Frames"_qs), u"1-3"_qs);
    EXPECT_EQ(document.note(u"Recording wanted"_qs), u"3"_qs);
    EXPECT_EQ(document.note(u"Camera frames produced"_qs), u"9"_qs);
    EXPECT_EQ(document.note(u"Mode"_qs), u"3x2, id 0, 24 bits per pixel"_qs);
}

TEST_F(OmeStackWriter, the_ledger_of_the_camera_is_written_as_a_whole) {
    POmeStackWriter writer(options);
    write(writer, 1);
    PFrameLedger ledger;
    ledger.waiting = 50;
    ledger.produced = 50;
    for (std::size_t i = 0; i < PFrameOutcomeCount; ++i)
        ledger.produced += ledger.outcomes[i] = i + 1;
    ASSERT_TRUE(writer.finish({{1, 1, 0, 0, 0, 0}, ledger, {}}).isOk());
    quint64 accounted = xml().note(u"Camera frames waiting"_qs).toULongLong();
    EXPECT_EQ(accounted, 50U);
    for (const PFrameOutcome outcome : PFrameLedger::allOutcomes()) {
        const QString key = QString::fromLatin1(PFrameLedger::key(outcome));
        accounted += xml().note(u"Camera frames "_qs + key).toULongLong();
    }
    EXPECT_EQ(xml().note(u"Camera frames produced"_qs).toULongLong(), accounted);
}

struct CompleteRow {
    const char* name;
    std::vector<std::pair<PFrameOutcome, quint64>> outcomes;
    const char* failure;
    const char* complete;
};

class CompleteNote : public OmeStackWriter, public WithRow<CompleteRow> {};

ROW_TEST(CompleteNote, names_what_is_missing) {
    POmeStackWriter writer(options);
    write(writer, 1);
    PFrameLedger ledger;
    for (const auto& [outcome, count] : GetParam().outcomes)
        ledger.outcomes[std::size_t(outcome)] = count;
    const QString failure = QString::fromLatin1(GetParam().failure);
    ASSERT_TRUE(writer.finish({{1, 1, 0, 0, 0, 0}, ledger, failure}).isOk());
    EXPECT_EQ(xml().note(u"Complete"_qs), QString::fromLatin1(GetParam().complete));
}

const CompleteRow completeRows[] = {
    {"with_every_frame_delivered", {{PFrameOutcome::Delivered, 9}}, "", "yes"},
    {"of_frames_lost_in_the_camera",
     {{PFrameOutcome::Delivered, 9}, {PFrameOutcome::LostInCamera, 2}},
     "",
     "yes, but frames of the camera are missing: 2 lost in the camera"},
    {"of_frames_that_were_not_pictures",
     {{PFrameOutcome::BadDepth, 1}, {PFrameOutcome::BadSize, 2}, {PFrameOutcome::NoMemory, 3}},
     "",
     "yes, but frames of the camera are missing: 1 dropped: unknown pixel depth, "
     "2 dropped: wrong size, 3 dropped: no memory"},
    {"of_frames_that_came_by_the_recorder_first",
     {{PFrameOutcome::DroppedWaiting, 1},
      {PFrameOutcome::Failed, 2},
      {PFrameOutcome::NotRequested, 3}},
     "",
     "yes"},
    {"of_a_recording_cut_short", {{PFrameOutcome::Delivered, 9}}, "interrupted", "no: interrupted"},
    {"of_a_recording_cut_short_that_lost_frames_too",
     {{PFrameOutcome::LostInCamera, 1}},
     "interrupted",
     "no: interrupted; frames of the camera are missing: 1 lost in the camera"},
};

ROWS_IN(Rows, CompleteNote, completeRows);

TEST_F(OmeStackWriter, before_the_end_the_file_is_a_valid_stack_of_the_pictures_so_far) {
    POmeStackWriter writer(options);
    for (int i = 1; i <= 12; ++i) {
        ASSERT_TRUE(writer.write(testFrame(quint64(i), 10ms * i), quint64(i)).isOk());
        EXPECT_EQ(soundPictures(), i);
        EXPECT_EQ(xml().attribute("Pixels", "SizeT").toInt(), i);
    }
    EXPECT_EQ(xml().complaints(), QString());
    EXPECT_TRUE(xml().note(u"Complete"_qs).startsWith(u"no"_qs));
    const TiffReadBack tiff(options.path);
    tiff.select(11);
    EXPECT_EQ(tiff.description(), QByteArray("Frame: 12\nTime: 2026-01-01T00:00:00.120Z"));
}

TEST_F(OmeStackWriter, a_grey_recording_has_one_sample) {
    POmeStackWriter writer(options);
    const auto grey = testFrame(1, 0ms, makeSettings({}), PDIP::ColorFormat::Gray);
    ASSERT_TRUE(writer.write(grey, 1).isOk());
    ASSERT_TRUE(writer.finish({}).isOk());
    EXPECT_EQ(TiffReadBack(options.path).field(TIFFTAG_SAMPLESPERPIXEL), 1);
    EXPECT_EQ(xml().attribute("Pixels", "SizeC"), u"1"_qs);
    EXPECT_EQ(xml().complaints(), QString());
}

TEST_F(OmeStackWriter, exposure_gain_pixel_size_and_temperature_are_written) {
    options.pixelSizeUm = 0.5;
    options.sensorTemperature = 12.5;
    POmeStackWriter writer(options);
    const auto manual =
        makeSettings({{"autoexponeable", false}, {"autoexpottime", 12'500}, {"autoexpogain", 150}});
    ASSERT_TRUE(writer.write(testFrame(1, 0ms, manual), 1).isOk());
    ASSERT_TRUE(writer.finish({}).isOk());
    EXPECT_EQ(xml().attribute("Plane", "ExposureTime"), u"12.5"_qs);
    EXPECT_EQ(xml().attribute("DetectorSettings", "Gain"), u"1.5"_qs);
    EXPECT_EQ(xml().attribute("Pixels", "PhysicalSizeX"), u"0.5"_qs);
    EXPECT_EQ(xml().attribute("ImagingEnvironment", "Temperature"), u"12.5"_qs);
    EXPECT_TRUE(xml().note(u"Exposure"_qs).endsWith(u" ms (manual)"_qs))
        << xml().note(u"Exposure"_qs).toStdString();
}

TEST_F(OmeStackWriter, each_picture_has_the_exposure_it_was_taken_with) {
    POmeStackWriter writer(options);
    for (int i = 1; i <= 3; ++i) {
        const auto settings = makeSettings({{"autoexponeable", true}, {"autoexpottime", 1000 * i}});
        ASSERT_TRUE(writer.write(testFrame(quint64(i), 10ms * i, settings), quint64(i)).isOk());
    }
    ASSERT_TRUE(writer.finish({}).isOk());
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(xml().elements("Plane").at(i).attributes.value(u"ExposureTime"_qs),
                  QString::number(i + 1));
    }
    EXPECT_TRUE(xml().note(u"Exposure"_qs).endsWith(u" ms (automatic)"_qs))
        << xml().note(u"Exposure"_qs).toStdString();
}

TEST_F(OmeStackWriter, a_setting_that_changes_is_written_with_the_frame_it_changed_at) {
    POmeStackWriter writer(options);
    const auto before = makeSettings({{"contrast", 5}, {"hue", 1}});
    const auto after = makeSettings({{"contrast", 6}, {"hue", 1}});
    ASSERT_TRUE(writer.write(testFrame(1, 0ms, before), 1).isOk());
    ASSERT_TRUE(writer.write(testFrame(2, 1ms, before), 2).isOk());
    ASSERT_TRUE(writer.write(testFrame(7, 2ms, after), 3).isOk());
    ASSERT_TRUE(writer.finish({}).isOk());
    EXPECT_EQ(xml().note(u"Contrast"_qs), u"5"_qs);
    EXPECT_EQ(xml().note(u"Contrast from frame 7"_qs), u"6"_qs);
    EXPECT_EQ(xml().note(u"Hue from frame 7"_qs), QString());
    EXPECT_EQ(xml().note(u"Frames"_qs), u"1-2, 7"_qs);
    EXPECT_EQ(xml().note(u"Changes of settings not listed"_qs), QString());
}

TEST_F(OmeStackWriter, of_very_many_changes_of_settings_the_first_thousand_are_written) {
    POmeStackWriter writer(options);
    for (int i = 0; i <= 1002; ++i) {
        const auto settings = makeSettings({{"autoexpogain", 100 + i}});
        ASSERT_TRUE(
            writer.write(testFrame(quint64(i + 1), 1ms * i, settings), quint64(i + 1)).isOk());
    }
    ASSERT_TRUE(writer.finish({}).isOk());
    EXPECT_EQ(xml().note(u"Gain from frame 1001"_qs), u"1100 %"_qs);
    EXPECT_EQ(xml().note(u"Gain from frame 1002"_qs), QString());
    EXPECT_EQ(xml().note(u"Changes of settings not listed"_qs), u"2"_qs);
}

TEST_F(OmeStackWriter, notes_the_end_of_automatic_exposure_and_writes_the_time_of_each_frame) {
    POmeStackWriter writer(options);
    const auto settings = [](int time, bool automatic) {
        return makeSettings({{"autoexpottime", time}, {"autoexponeable", automatic}});
    };
    ASSERT_TRUE(writer.write(testFrame(1, 0ms, settings(1000, true)), 1).isOk());
    ASSERT_TRUE(writer.write(testFrame(2, 1ms, settings(2000, true)), 2).isOk());
    ASSERT_TRUE(writer.write(testFrame(3, 2ms, settings(3000, false)), 3).isOk());
    ASSERT_TRUE(writer.finish({}).isOk());
    EXPECT_EQ(xml().note(u"Exposure"_qs), u"1 ms (automatic)"_qs);
    EXPECT_EQ(xml().note(u"Exposure from frame 2"_qs), QString());
    EXPECT_EQ(xml().note(u"Exposure from frame 3"_qs), u"3 ms (manual)"_qs);
}

TEST_F(OmeStackWriter, a_setting_of_several_values_is_written_field_by_field) {
    POmeStackWriter writer(options);
    const auto settings =
        makeSettings({{"extexposure", QVariant::fromValue(TestExposureRecord())}});
    ASSERT_TRUE(writer.write(testFrame(1, 0ms, settings), 1).isOk());
    ASSERT_TRUE(writer.finish({}).isOk());
    EXPECT_EQ(xml().note(u"Exposure"_qs), u"1.5 ms (manual)"_qs);
    EXPECT_EQ(xml().note(u"Gain"_qs), u"120 %"_qs);
    EXPECT_EQ(xml().note(u"Capture"_qs), u"video"_qs);
    EXPECT_EQ(xml().note(u"Setting extexposure"_qs), QString());
    EXPECT_EQ(xml().attribute("Plane", "ExposureTime"), u"1.5"_qs);
}

TEST_F(OmeStackWriter, it_is_a_bigtiff_unless_it_is_known_to_stay_below_4_gb) {
    // 3 million bytes of pixels and at most 2000 others, 1300 times: 3.9 GB are just exceeded.
    const auto frame = testFrame(1, 0ms, makeSettings({}), PDIP::ColorFormat::Bgr, 1000, 1000);
    const auto isBig = [&](std::optional<quint64> frames) {
        QFile::remove(options.path);
        options.frames = frames;
        POmeStackWriter writer(options);
        EXPECT_TRUE(writer.write(frame, 1).isOk());
        return TiffReadBack(options.path).isBig();
    };
    EXPECT_TRUE(isBig(std::nullopt));
    EXPECT_FALSE(isBig(1));
    EXPECT_FALSE(isBig(1298));
    EXPECT_TRUE(isBig(1299));
    EXPECT_TRUE(isBig(std::numeric_limits<quint64>::max()));
}

TEST_F(OmeStackWriter, it_takes_no_more_frames_than_readers_take_pictures) {
    EXPECT_EQ(options.mostFrames, 1'048'576U);
    options.mostFrames = 3;
    POmeStackWriter writer(options);
    write(writer, 3);
    const PStatus status = writer.write(testFrame(4, 40ms), 4);
    EXPECT_TRUE(status.reason().contains(u"one file holds no more than 3 frames"_qs))
        << status.reason().toStdString();
    ASSERT_TRUE(writer.finish({}).isOk());
    EXPECT_EQ(soundPictures(), 3);
    EXPECT_EQ(xml().complaints(), QString());
}

TEST_F(OmeStackWriter, a_file_that_exists_is_refused_named_and_left_alone) {
    writeFile(options.path, "mine");
    POmeStackWriter writer(options);
    const PStatus status = writer.write(testFrame(1, 0ms), 1);
    EXPECT_FALSE(status.isOk());
    EXPECT_TRUE(status.reason().contains(options.path)) << status.reason().toStdString();
    EXPECT_TRUE(writer.finish({}).isOk());
    EXPECT_EQ(readFile(options.path), QByteArray("mine"));
}

TEST_F(OmeStackWriter, a_frame_of_another_size_or_kind_is_refused_and_the_rest_stays) {
    POmeStackWriter writer(options);
    write(writer, 2);
    const auto wide = testFrame(3, 0ms, makeSettings({}), PDIP::ColorFormat::Bgr, 4);
    const auto grey = testFrame(3, 0ms, makeSettings({}), PDIP::ColorFormat::Gray);
    for (const PDeviceFrame& other : {wide, grey}) {
        const PStatus status = writer.write(other, 3);
        EXPECT_TRUE(status.reason().contains(u"frame 3 differs in size or format"_qs))
            << status.reason().toStdString();
    }
    ASSERT_TRUE(writer.finish({}).isOk());
    EXPECT_EQ(soundPictures(), 2);
    EXPECT_EQ(xml().complaints(), QString());
}

TEST_F(OmeStackWriter, a_recording_without_frames_leaves_no_file) {
    POmeStackWriter writer(options);
    EXPECT_TRUE(writer.finish({}).isOk());
    EXPECT_FALSE(QFile::exists(options.path));
}

TEST_F(OmeStackWriter, a_disk_without_room_for_the_first_frame_is_left_without_a_file) {
    POmeStackWriter writer(options);
    {
        const FileSizeLimit limit(100);
        const PStatus status = writer.write(testFrame(1, 0ms), 1);
        EXPECT_TRUE(status.reason().contains(qt_error_string(EFBIG)))
            << status.reason().toStdString();
    }
    EXPECT_TRUE(writer.finish({}).isOk());
    EXPECT_FALSE(QFile::exists(options.path));
}

TEST_F(OmeStackWriter, on_a_full_disk_the_file_stays_a_valid_stack_of_what_fitted) {
    POmeStackWriter writer(options);
    write(writer, 3);
    const FileSizeLimit limit(rlim_t(QFileInfo(options.path).size()) + 40);
    EXPECT_FALSE(writer.write(testFrame(4, 40ms), 4).isOk());
    const PStatus status = writer.finish({});
    EXPECT_TRUE(status.reason().contains(qt_error_string(EFBIG))) << status.reason().toStdString();
    EXPECT_EQ(soundPictures(), 3);
    EXPECT_EQ(xml().attribute("Pixels", "SizeT").toInt(), 3);
}

TEST_F(OmeStackWriter, a_file_that_another_program_truncated_is_reported_as_that) {
    POmeStackWriter writer(options);
    write(writer, 3);
    ASSERT_TRUE(QFile::resize(options.path, 100));
    const QString reason = u"the file was truncated while it was being written"_qs;
    EXPECT_TRUE(writer.write(testFrame(4, 40ms), 4).reason().endsWith(reason));
    const PStatus status = writer.finish({});
    EXPECT_TRUE(status.reason().endsWith(reason)) << status.reason().toStdString();
    EXPECT_EQ(writer.missing(), 3U);
}

} // namespace
