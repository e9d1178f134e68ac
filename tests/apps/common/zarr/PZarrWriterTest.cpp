// SPDX-License-Identifier: MIT
#include <apps/common/zarr/PZarrWriter.h>

#include <apps/common/TestFrames.h>
#include <apps/common/reading/OmeXml.h>
#include <apps/common/reading/ZarrReadBack.h>

#include <support/FileSizeLimit.h>
#include <support/FolderTest.h>
#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>

#include <cerrno>

namespace {

using namespace std::chrono_literals;

/// A size of which the first level of a pyramid is large and the others are small.
constexpr int chunkWidth = 600;
constexpr int chunkHeight = 40;

class ZarrWriter : public FolderTest {
protected:
    PZarrWriter::Options options{path(u"run.ome.zarr"_qs),
                                 {u"Small-S0001"_qs, u"Small"_qs, u"S0001"_qs, true},
                                 {},
                                 std::nullopt,
                                 std::nullopt,
                                 false};
    const ZarrReadBack recording{path(u"run.ome.zarr"_qs)};

    static PDeviceFrame frame(int number, PDIP::ColorFormat format = PDIP::ColorFormat::Bgr) {
        return testFrame(quint64(number), 10ms * (number - 1), makeSettings({}), format, chunkWidth,
                         chunkHeight);
    }
    /// Writes frames 1, 2 … 10 ms apart.
    static void write(PZarrWriter& writer, int frames) {
        for (int i = 1; i <= frames; ++i) {
            const PStatus status = writer.write(frame(i), quint64(i));
            ASSERT_TRUE(status.isOk()) << status.reason().toStdString();
        }
    }
    OmeXml xml() const { return OmeXml(recording.xml()); }
    /// Expects this number of frames everywhere, each with its own number in all its pixels, and
    /// nothing else.
    void expectFrames(int frames, int levels = 1) const {
        for (int level = 0; level < levels; ++level) {
            const std::vector<int> shape = recording.shape(level);
            EXPECT_EQ(shape,
                      (std::vector<int>{frames, 3, chunkHeight >> level, chunkWidth >> level}));
            const int size = (chunkHeight >> level) * (chunkWidth >> level);
            for (int i = 0; i < 3 * frames; ++i)
                EXPECT_EQ(recording.chunk(i / 3, i % 3, level), QByteArray(size, char(i / 3 + 1)));
            EXPECT_EQ(recording.chunk(frames, 0, level), QByteArray());
        }
        EXPECT_EQ(recording.times().size(), frames + 1);
        EXPECT_EQ(xml().attribute("Pixels", "SizeT").toInt(), frames);
        EXPECT_EQ(xml().complaints(), QString());
        EXPECT_EQ(recording.parts(), QStringList());
    }
    /// Of the axes t, c, y, x at full size.
    QJsonArray scale() const {
        const QJsonValue datasets = recording.multiscale().value(u"datasets"_qs);
        return datasets[0][u"coordinateTransformations"_qs][0][u"scale"_qs].toArray();
    }
    QStringList names() const {
        return QDir(path(QString()))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
};

TEST_F(ZarrWriter, recognises_its_names) {
    EXPECT_TRUE(PZarrWriter::isName(u"a.ome.zarr"_qs));
    EXPECT_TRUE(PZarrWriter::isName(u"A.OME.ZARR"_qs));
    EXPECT_FALSE(PZarrWriter::isName(u"a.zarr"_qs));
    EXPECT_FALSE(PZarrWriter::isName(u"ome.zarr"_qs));
}

TEST_F(ZarrWriter, a_finished_recording_describes_every_frame_in_it) {
    PZarrWriter writer(options);
    write(writer, 3);
    PFrameLedger ledger;
    ledger.produced = 9;
    ASSERT_TRUE(writer.finish({{3, 3, 0, 0, 0, 0}, ledger, {}}).isOk());
    expectFrames(3);
    EXPECT_EQ(recording.document(u".zattrs"_qs).value(u"bioformats2raw.layout"_qs), 3);
    const OmeXml document = xml();
    ASSERT_EQ(document.elements("Plane").size(), 9);
    const auto plane = document.elements("Plane").at(7).attributes;
    EXPECT_EQ(plane.value(u"TheT"_qs), u"2"_qs);
    EXPECT_EQ(plane.value(u"TheC"_qs), u"1"_qs);
    EXPECT_EQ(plane.value(u"DeltaT"_qs), u"0.02"_qs);
    EXPECT_EQ(document.text("AcquisitionDate"), u"2026-01-01T00:00:00.000Z"_qs);
    EXPECT_EQ(document.attribute("Image", "Name"), u"run.ome.zarr"_qs);
    EXPECT_EQ(document.note(u"Simulated"_qs), u"yes"_qs);
    EXPECT_EQ(document.note(u"Complete"_qs), u"yes"_qs);
    EXPECT_EQ(document.note(u"Frames"_qs), u"1-3"_qs);
    EXPECT_EQ(document.note(u"Recording wanted"_qs), u"3"_qs);
    EXPECT_EQ(document.note(u"Camera frames produced"_qs), u"9"_qs);
}

TEST_F(ZarrWriter, before_the_end_it_is_a_valid_recording_of_the_frames_so_far) {
    options.pyramid = true;
    PZarrWriter writer(options);
    for (int i = 1; i <= 12; ++i) {
        ASSERT_TRUE(writer.write(frame(i), quint64(i)).isOk());
        expectFrames(i, 3);
    }
    EXPECT_EQ(xml().note(u"Complete"_qs),
              u"no: the recording was cut short, and the times of its frames are in "
              "OME/frames.csv"_qs);
    EXPECT_EQ(recording.times().at(12), u"11,12,2026-01-01T00:00:00.110Z,0.11,"_qs);
}

TEST_F(ZarrWriter, a_grey_recording_has_one_channel) {
    PZarrWriter writer(options);
    ASSERT_TRUE(writer.write(frame(5, PDIP::ColorFormat::Gray), 1).isOk());
    ASSERT_TRUE(writer.finish({}).isOk());
    EXPECT_EQ(recording.shape(), (std::vector<int>{1, 1, chunkHeight, chunkWidth}));
    EXPECT_EQ(recording.chunk(0, 0), QByteArray(chunkWidth * chunkHeight, 5));
    EXPECT_EQ(xml().attribute("Pixels", "SizeC"), u"1"_qs);
    EXPECT_EQ(xml().elements("Channel").size(), 1);
    EXPECT_EQ(xml().complaints(), QString());
}

TEST_F(ZarrWriter, red_green_and_blue_are_in_this_order) {
    PDeviceFrame coloured = frame(1);
    const PDIP::ImageRawData data = coloured.image.rawData(PDIP::AccessMode::Write);
    for (std::size_t i = 0; i < data.size(); ++i)
        data.data()[i] = uchar("BGR"[i % 3]); // the rows have no padding
    PZarrWriter writer(options);
    ASSERT_TRUE(writer.write(coloured, 1).isOk());
    EXPECT_EQ(recording.chunk(0, 0), QByteArray(chunkWidth * chunkHeight, 'R'));
    EXPECT_EQ(recording.chunk(0, 1), QByteArray(chunkWidth * chunkHeight, 'G'));
    EXPECT_EQ(recording.chunk(0, 2), QByteArray(chunkWidth * chunkHeight, 'B'));
}

TEST_F(ZarrWriter, exposure_gain_sizes_time_step_and_temperature_are_written) {
    options.pixelSizeUm = 0.5;
    options.sensorTemperature = 12.5;
    PZarrWriter writer(options);
    const auto settings =
        makeSettings({{"autoexponeable", false}, {"autoexpottime", 12'500}, {"autoexpogain", 150}});
    for (int i = 0; i < 3; ++i)
        ASSERT_TRUE(writer.write(testFrame(quint64(i + 1), 40ms * i, settings), 1).isOk());
    ASSERT_TRUE(writer.finish({}).isOk());
    EXPECT_EQ(xml().attribute("Plane", "ExposureTime"), u"12.5"_qs);
    EXPECT_EQ(xml().attribute("DetectorSettings", "Gain"), u"1.5"_qs);
    EXPECT_EQ(xml().attribute("Pixels", "PhysicalSizeX"), u"0.5"_qs);
    EXPECT_EQ(xml().attribute("ImagingEnvironment", "Temperature"), u"12.5"_qs);
    EXPECT_EQ(recording.times().at(2), u"1,2,2026-01-01T00:00:00.040Z,0.04,12.5"_qs);
    EXPECT_EQ(scale(), (QJsonArray{0.04, 1, 0.5, 0.5}));
}

TEST_F(ZarrWriter, the_document_that_says_complete_comes_after_all_else) {
    PZarrWriter writer(options);
    write(writer, 3);
    const QString blocked = options.path + u"/OME/METADATA.ome.xml.part"_qs;
    ASSERT_TRUE(QDir().mkpath(blocked));
    EXPECT_FALSE(writer.finish({}).isOk());
    EXPECT_EQ(scale(), (QJsonArray{0.01, 1, 1, 1}));
    EXPECT_TRUE(xml().note(u"Recording wanted"_qs).isEmpty());
}

TEST_F(ZarrWriter, a_time_step_that_cannot_be_written_costs_no_times_of_frames) {
    PZarrWriter writer(options);
    write(writer, 3);
    const QString blocked = options.path + u"/0/.zattrs.part"_qs;
    ASSERT_TRUE(QDir().mkpath(blocked));
    EXPECT_FALSE(writer.finish({}).isOk());
    EXPECT_EQ(scale(), (QJsonArray{1, 1, 1, 1}));
    EXPECT_EQ(xml().elements("Plane").size(), 9);
}

struct PyramidRow {
    const char* name;
    QSize size;
    std::vector<QSize> levels;
};

class ZarrPyramid : public RowTest<PyramidRow> {};

ROW_TEST(ZarrPyramid, halves_the_size_until_it_is_small) {
    EXPECT_EQ(PZarrWriter::pyramid(GetParam().size), GetParam().levels);
}

const PyramidRow pyramidRows[] = {
    {"of_20_megapixels",
     {5440, 3648},
     {{5440, 3648}, {2720, 1824}, {1360, 912}, {680, 456}, {340, 228}, {170, 114}}},
    {"of_a_picture_that_is_small", {256, 256}, {{256, 256}}},
    {"of_a_picture_that_is_just_not_small", {257, 1}, {{257, 1}}},
    {"of_an_odd_size", {515, 301}, {{515, 301}, {257, 150}, {128, 75}}},
    {"of_a_picture_with_few_rows", {4000, 3}, {{4000, 3}, {2000, 1}}},
};

ROWS_IN(Rows, ZarrPyramid, pyramidRows);

TEST_F(ZarrWriter, what_has_the_name_is_left_alone_and_named) {
    writeFile(options.path, "mine");
    PZarrWriter writer(options);
    const PStatus status = writer.write(frame(1), 1);
    EXPECT_TRUE(status.reason().contains(options.path)) << status.reason().toStdString();
    EXPECT_TRUE(writer.finish({}).isOk());
    EXPECT_EQ(readFile(options.path), QByteArray("mine"));
    EXPECT_EQ(names(), QStringList(u"run.ome.zarr"_qs));
}

TEST_F(ZarrWriter, a_frame_of_another_size_or_kind_is_refused_and_the_rest_stays) {
    PZarrWriter writer(options);
    write(writer, 2);
    for (const PDeviceFrame& other : {testFrame(3, 0ms), frame(3, PDIP::ColorFormat::Gray)}) {
        const PStatus status = writer.write(other, 3);
        EXPECT_TRUE(status.reason().contains(u"frame 3 differs in size or format"_qs))
            << status.reason().toStdString();
    }
    ASSERT_TRUE(writer.finish({}).isOk());
    expectFrames(2);
}

TEST_F(ZarrWriter, a_recording_without_frames_leaves_nothing) {
    PZarrWriter writer(options);
    EXPECT_TRUE(writer.finish({}).isOk());
    EXPECT_EQ(names(), QStringList());
}

TEST_F(ZarrWriter, a_disk_without_room_for_the_first_frame_is_left_empty) {
    PZarrWriter writer(options);
    {
        const FileSizeLimit limit(10);
        const PStatus status = writer.write(frame(1), 1);
        EXPECT_TRUE(status.reason().contains(qt_error_string(EFBIG)))
            << status.reason().toStdString();
    }
    EXPECT_TRUE(writer.finish({}).isOk());
    EXPECT_EQ(names(), QStringList());
}

/// A frame that LZ4 cannot make smaller.
PDeviceFrame noisyFrame(int number) {
    PDeviceFrame noisy = testFrame(quint64(number), 10ms * (number - 1), makeSettings({}),
                                   PDIP::ColorFormat::Bgr, chunkWidth, chunkHeight);
    const PDIP::ImageRawData data = noisy.image.rawData(PDIP::AccessMode::Write);
    quint32 state = 1;
    for (std::size_t i = 0; i < data.size(); ++i)
        data.data()[i] = uchar((state = state * 1'664'525 + 1'013'904'223) >> 24);
    return noisy;
}

TEST_F(ZarrWriter, on_a_full_disk_the_frames_before_are_whole_and_nothing_else_remains) {
    options.pyramid = true;
    PZarrWriter writer(options);
    write(writer, 3);
    {
        const FileSizeLimit limit(16'000); // the metadata fits, a chunk of noise does not
        const PStatus status = writer.write(noisyFrame(4), 4);
        EXPECT_TRUE(status.reason().contains(qt_error_string(EFBIG)))
            << status.reason().toStdString();
        EXPECT_TRUE(status.reason().contains(options.path)) << status.reason().toStdString();
        expectFrames(3, 3);
        EXPECT_TRUE(writer.finish({{4, 3, 0, 1, 0, 0}, {}, status.reason()}).isOk());
    }
    expectFrames(3, 3);
    EXPECT_TRUE(xml().note(u"Complete"_qs).startsWith(u"no: cannot save"_qs));
    EXPECT_EQ(xml().elements("Plane").size(), 9);
}

struct BlockedRow {
    const char* name;
    const char* blocked; ///< this file cannot be made
};

class ZarrStep : public ZarrWriter, public WithRow<BlockedRow> {};

ROW_TEST(ZarrStep, that_fails_takes_the_frame_with_it) {
    options.pyramid = true;
    PZarrWriter writer(options);
    write(writer, 2);
    const QString blocked = options.path + u'/' + QString::fromLatin1(GetParam().blocked);
    ASSERT_TRUE(QDir().mkpath(blocked + u"/inside"_qs));
    EXPECT_FALSE(writer.write(frame(3), 3).isOk());
    ASSERT_TRUE(QDir(blocked).removeRecursively());
    expectFrames(2, 3);
    ASSERT_TRUE(writer.finish({}).isOk());
    expectFrames(2, 3);
}

const BlockedRow blockedRows[] = {
    {"of_the_first_chunk", "0/0/.part"},
    {"of_a_smaller_size_getting_its_name", "0/2/2"},
    {"of_the_full_size_getting_its_name", "0/0/2"},
    {"of_counting_the_smallest_size", "0/2/.zarray.part"},
    {"of_counting_the_full_size", "0/0/.zarray.part"},
    {"of_the_document", "OME/METADATA.ome.xml.part"},
};

ROWS_IN(Rows, ZarrStep, blockedRows);

TEST_F(ZarrWriter, a_line_of_times_that_does_not_fit_takes_its_frame_with_it) {
    // Frames of one colour are small, and so are all files but the table, which grows.
    PZarrWriter writer(options);
    PStatus status;
    int frames = 0;
    const FileSizeLimit limit(3500);
    while (status.isOk() && frames < 1000) {
        status = writer.write(frame(frames % 100 + 1, PDIP::ColorFormat::Gray), 1);
        frames += status.isOk() ? 1 : 0;
    }
    EXPECT_TRUE(status.reason().contains(qt_error_string(EFBIG))) << status.reason().toStdString();
    ASSERT_GT(frames, 10);
    EXPECT_EQ(recording.shape().at(0), frames);
    EXPECT_EQ(recording.times().size(), frames + 1);
    EXPECT_EQ(recording.chunk(frames), QByteArray());
    EXPECT_EQ(recording.chunk(frames - 1).size(), chunkWidth * chunkHeight);
    // The document with the times of all frames does not fit either.
    const PStatus finished = writer.finish({});
    EXPECT_TRUE(finished.reason().contains(u"their times are only in OME/frames.csv"_qs))
        << finished.reason().toStdString();
    EXPECT_EQ(xml().attribute("Pixels", "SizeT").toInt(), frames);
    EXPECT_EQ(recording.parts(), QStringList());
}

TEST_F(ZarrWriter, a_recording_that_another_program_removed_is_not_made_again) {
    PZarrWriter writer(options);
    write(writer, 2);
    ASSERT_TRUE(QDir(options.path).removeRecursively());
    const PStatus status = writer.write(frame(3), 3);
    EXPECT_TRUE(status.reason().contains(qt_error_string(ENOENT))) << status.reason().toStdString();
    const PStatus finished = writer.finish({});
    EXPECT_TRUE(finished.reason().contains(u"it has 0 of 2 frames"_qs))
        << finished.reason().toStdString();
    EXPECT_EQ(names(), QStringList());
}

TEST_F(ZarrWriter, a_frame_that_another_program_removed_is_missed_at_the_end) {
    PZarrWriter writer(options);
    write(writer, 3);
    ASSERT_TRUE(QDir(options.path + u"/0/0/1"_qs).removeRecursively());
    const PStatus finished = writer.finish({});
    EXPECT_TRUE(finished.reason().contains(u"it has 2 of 3 frames"_qs))
        << finished.reason().toStdString();
}

TEST_F(ZarrWriter, a_frame_without_a_stamp_is_refused) {
    PZarrWriter writer(options);
    const PStatus status = writer.write({frame(1).image, nullptr}, 1);
    EXPECT_TRUE(status.reason().contains(u"no capture information"_qs))
        << status.reason().toStdString();
    EXPECT_EQ(names(), QStringList());
}

} // namespace
