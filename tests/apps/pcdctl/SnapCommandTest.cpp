// SPDX-License-Identifier: MIT
#include <apps/pcdctl/CtlFiles.h>
#include <apps/pcdctl/CtlProcess.h>
#include <apps/pcdctl/CtlScene.h>

#include <apps/common/reading/ExifTool.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <QDateTime>
#include <QDir>
#include <QFile>

namespace {

class SnapCommand : public FolderTest {
protected:
    CtlScene scene = CtlScene().addCamera();

    QStringList arguments(const QString& output, const QStringList& more) const {
        const QString file = scene.writeTo(path(u"scene.json"_qs));
        return QStringList{u"snap"_qs, u"--sdk=sim"_qs, u"--scene"_qs, file, u"-o"_qs, output} +
               more;
    }
    CtlResult snap(const QString& output, const QStringList& more = {}) const {
        return runCtl(arguments(output, more));
    }
};

TEST_F(SnapCommand, red_is_red_green_is_green_and_blue_is_blue_in_a_file_1003_pixels_wide) {
    scene.setResolution(1003, 300, 50);
    const CtlResult result = snap(path(u"a.png"_qs));
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    const QImage picture(path(u"a.png"_qs));
    EXPECT_EQ(picture.size(), QSize(1003, 300));
    EXPECT_EQ(patchColours(picture), u"red green blue black"_qs);
}

TEST_F(SnapCommand, prints_what_it_saved_and_where_as_json) {
    const QString file = path(u"a.png"_qs);
    const CtlResult result = snap(file, {u"--json"_qs});
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    QJsonObject json = result.json;
    const QString time = json.take(u"time"_qs).toString();
    EXPECT_TRUE(QDateTime::fromString(time, Qt::ISODateWithMs).isValid()) << time.toStdString();
    EXPECT_EQ(json, QJsonObject({{u"camera"_qs, smallCameraId},
                                 {u"model"_qs, u"Small"_qs},
                                 {u"serial"_qs, u"S0001"_qs},
                                 {u"simulated"_qs, true},
                                 {u"file"_qs, file},
                                 {u"width"_qs, 320},
                                 {u"height"_qs, 240},
                                 {u"mode"_qs, u"320x240"_qs}}))
        << result.output.toStdString();
}

TEST_F(SnapCommand, names_with_percent_signs_are_printed_as_they_are) {
    scene.set(u"model"_qs, u"50%1 %4"_qs);
    const QString file = path(u"a%2%5.png"_qs);
    const CtlResult result = snap(file);
    EXPECT_EQ(QString::fromUtf8(result.output),
              u"Saved "_qs + file + u": 320 x 240 pixels, camera 50%1 %4-S0001 (simulated)\n"_qs)
        << result.errors.toStdString();
    EXPECT_FALSE(QImage(file).isNull());
}

TEST_F(SnapCommand, the_file_says_how_the_picture_was_made) {
    ASSERT_EQ(snap(path(u"a.png"_qs), {u"--mode"_qs, u"1"_qs}).exitCode, 0);
    const QImage picture(path(u"a.png"_qs));
    EXPECT_EQ(picture.text(u"Camera"_qs), smallCameraId);
    EXPECT_EQ(picture.text(u"Model"_qs), u"Small"_qs);
    EXPECT_EQ(picture.text(u"Serial"_qs), u"S0001"_qs);
    EXPECT_EQ(picture.text(u"Simulated"_qs), u"yes"_qs);
    EXPECT_EQ(picture.text(u"Mode"_qs), u"160x120, id 1, 24 bits per pixel"_qs);
    EXPECT_EQ(picture.text(u"Still picture"_qs), u"1"_qs);
    EXPECT_EQ(picture.text(u"Frame"_qs), QString()); // it is not a frame of the live stream
    const QString time = picture.text(u"Time"_qs);
    EXPECT_TRUE(time.endsWith(u'Z')) << time.toStdString();
    EXPECT_TRUE(QDateTime::fromString(time, Qt::ISODateWithMs).isValid()) << time.toStdString();
}

TEST_F(SnapCommand, another_program_reads_how_the_picture_was_made) {
    for (const QString& name : {u"a.png"_qs, u"a.tif"_qs}) {
        ASSERT_EQ(snap(path(name), {u"--pixel-size=0.5"_qs, u"--set"_qs, u"autoexponeable=off"_qs,
                                    u"--set"_qs, u"autoexpottime=12500"_qs})
                      .exitCode,
                  0);
        const QJsonObject tags = exifToolTags(path(name));
        EXPECT_EQ(tags.value(u"IFD0:Make"_qs).toString(), u"Simulated camera"_qs);
        EXPECT_EQ(tags.value(u"IFD0:Model"_qs).toString(), u"Small"_qs);
        EXPECT_TRUE(tags.value(u"IFD0:Software"_qs).toString().startsWith(u"pcdctl "_qs));
        EXPECT_NEAR(tags.value(u"ExifIFD:ExposureTime"_qs).toDouble(), 0.0125, 1e-8);
        EXPECT_EQ(tags.value(u"IFD0:XResolution"_qs).toDouble(), 20'000);
    }
    EXPECT_EQ(QImage(path(u"a.png"_qs)).text(u"Exposure"_qs), u"12.5 ms (manual)"_qs);
    EXPECT_EQ(QImage(path(u"a.png"_qs)).text(u"Gain"_qs), u"100 %"_qs);
    EXPECT_FALSE(readFile(path(u"a.png"_qs)).contains("12500"));
    EXPECT_FALSE(readFile(path(u"a.tif"_qs)).contains("12500"));
}

TEST_F(SnapCommand, saves_the_exposure_that_another_setting_has_set) {
    ASSERT_EQ(snap(path(u"a.png"_qs), {u"--set"_qs, u"extexposure.autoexpenabled=off"_qs,
                                       u"--set"_qs, u"extexposure.exp=20"_qs})
                  .exitCode,
              0);
    EXPECT_EQ(QImage(path(u"a.png"_qs)).text(u"Exposure"_qs), u"20 ms (manual)"_qs);
}

TEST_F(SnapCommand, a_mode_may_be_given_by_its_name) {
    ASSERT_EQ(snap(path(u"a.png"_qs), {u"--mode"_qs, u"160x120"_qs}).exitCode, 0);
    EXPECT_EQ(QImage(path(u"a.png"_qs)).size(), QSize(160, 120));
}

TEST_F(SnapCommand, an_unknown_mode_is_wrong_usage_that_lists_the_modes) {
    const CtlResult result = snap(path(u"a.png"_qs), {u"--mode"_qs, u"7"_qs});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.errors.contains(
        u"the camera has no mode \"7\": expected one of 0 (320x240), 1 (160x120)"_qs))
        << result.errors.toStdString();
}

TEST_F(SnapCommand, a_camera_that_reports_no_mode_does_not_answer) {
    scene.addFault(failing(u"Toupcam_get_ResolutionNumber"_qs));
    const CtlResult result = snap(path(u"a.png"_qs), {u"--mode"_qs, u"1"_qs});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors,
              u"pcdctl: camera Small-S0001 no longer answers: it was unplugged, or it hangs\n"_qs);
}

TEST_F(SnapCommand, a_grey_camera_gives_a_grey_file) {
    scene.set(u"bits"_qs, 8).set(u"flags"_qs, QJsonArray{u"MONO"_qs});
    ASSERT_EQ(snap(path(u"a.png"_qs)).exitCode, 0);
    EXPECT_EQ(QImage(path(u"a.png"_qs)).format(), QImage::Format_Grayscale8);
}

TEST_F(SnapCommand, a_tiff_file_is_written_too) {
    ASSERT_EQ(snap(path(u"a.tiff"_qs)).exitCode, 0);
    const QByteArray bytes = readFile(path(u"a.tiff"_qs));
    EXPECT_TRUE(bytes.startsWith("II*"));
    EXPECT_TRUE(bytes.contains("Camera: Small-S0001\n"));
    EXPECT_GT(bytes.size(), 320 * 240 * 3);
}

TEST_F(SnapCommand, the_folder_of_the_file_is_made) {
    const QString file = path(u"deep/down/a.png"_qs);
    EXPECT_EQ(snap(file).exitCode, 0);
    EXPECT_FALSE(QImage(file).isNull());
}

TEST_F(SnapCommand, a_file_of_this_name_is_replaced) {
    writeFile(path(u"a.png"_qs), "old");
    EXPECT_EQ(snap(path(u"a.png"_qs)).exitCode, 0);
    EXPECT_EQ(QImage(path(u"a.png"_qs)).size(), QSize(320, 240));
}

TEST_F(SnapCommand, a_file_of_this_name_stays_whole_if_the_new_one_cannot_be_written) {
    scene.set(u"source"_qs,
              QJsonObject{{u"kind"_qs, u"flat"_qs}}); // noise: the file cannot be small
    writeFile(path(u"a.png"_qs), "old");
    CtlProcess process(arguments(path(u"a.png"_qs), {}));
    process.with([] { limitFileSize(4096); });
    ASSERT_TRUE(process.finish());
    EXPECT_EQ(process.exitCode(), 1);
    const QByteArray errors = process.errors();
    EXPECT_EQ(errors,
              "pcdctl: cannot save \"" + path(u"a.png"_qs).toUtf8() + "\": File too large\n")
        << errors.toStdString();
    EXPECT_EQ(readFile(path(u"a.png"_qs)), QByteArray("old"));
    EXPECT_EQ(QDir(path(QString())).entryList({u"a.png*"_qs}, QDir::Files),
              QStringList{u"a.png"_qs});
}

TEST_F(SnapCommand, a_name_adds_no_line_to_what_a_tiff_file_says) {
    scene.set(u"model"_qs, u"A\nSimulated: no"_qs);
    ASSERT_EQ(snap(path(u"a.tif"_qs)).exitCode, 0);
    const QByteArray bytes = readFile(path(u"a.tif"_qs));
    EXPECT_TRUE(bytes.contains("\nModel: A\\nSimulated: no\n"));
    EXPECT_FALSE(bytes.contains("\nSimulated: no"));
}

struct OutputRow {
    const char* name;
    const char* output;
    const char* message;
};

constexpr OutputRow badOutputs[] = {
    {"in_a_folder_that_cannot_be_made", "file/a.png", "cannot be created"},
    {"that_is_a_folder", "folder.png", "it is a folder"},
};

class SnapOutput : public SnapCommand, public WithRow<OutputRow> {};

ROW_TEST(SnapOutput, is_refused_before_the_camera_is_touched) {
    writeFile(path(u"file"_qs), "in the way");
    ASSERT_TRUE(QDir().mkpath(path(u"folder.png"_qs)));
    const QString journal = path(u"journal"_qs);
    const CtlResult result =
        runCtl(arguments(path(QString::fromLatin1(GetParam().output)), {}),
               [&](CtlProcess& process) { process.with(u"TOUPCAM_SIM_JOURNAL"_qs, journal); });
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.errors.contains(QString::fromLatin1(GetParam().message)))
        << result.errors.toStdString();
    EXPECT_EQ(readFile(journal), QByteArray());
}

ROWS_IN(Pcdctl, SnapOutput, badOutputs);

TEST_F(SnapCommand, a_name_that_is_too_long_is_refused_before_the_camera_is_touched) {
    const QString file = path(QString(128, u'ß') + u".png"_qs);
    const QString journal = path(u"journal"_qs);
    const CtlResult result = runCtl(arguments(file, {}), [&](CtlProcess& process) {
        process.with(u"TOUPCAM_SIM_JOURNAL"_qs, journal);
    });
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.errors.contains(u"its name has 260 bytes: expected at most 248"_qs))
        << result.errors.toStdString();
    EXPECT_EQ(readFile(journal), QByteArray());
}

TEST_F(SnapCommand, the_picture_comes_by_still_capture) {
    const QString journal = path(u"journal"_qs);
    const CtlResult result =
        runCtl(arguments(path(u"a.png"_qs), {u"--mode=1"_qs}),
               [&](CtlProcess& process) { process.with(u"TOUPCAM_SIM_JOURNAL"_qs, journal); });
    ASSERT_EQ(result.exitCode, 0);
    EXPECT_TRUE(readFile(journal).contains("Toupcam_Snap(h1, 1) = 0"));
}

TEST_F(SnapCommand, a_camera_that_refuses_a_still_picture_is_a_failure) {
    scene.addFault(failing(u"Toupcam_Snap"_qs));
    const CtlResult result = snap(path(u"a.png"_qs));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.errors.contains(u"the camera refused to take a still"_qs));
    EXPECT_FALSE(QFile::exists(path(u"a.png"_qs)));
}

TEST_F(SnapCommand, a_camera_that_sends_nothing_is_given_up) {
    scene.addFault(stepAt(0, u"hold"_qs));
    const CtlResult result = snap(path(u"a.png"_qs), {u"--timeout=0.5"_qs});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(
        result.errors.contains(u"camera Small-S0001 did not send the first live frame in time"_qs))
        << result.errors.toStdString();
    EXPECT_FALSE(QFile::exists(path(u"a.png"_qs)));
}

TEST_F(SnapCommand, a_camera_unplugged_meanwhile_is_named) {
    scene.setResolution(64, 48, 1).addFault(stepAt(500, u"unplug"_qs));
    const CtlResult result = snap(path(u"a.png"_qs));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.errors.contains(u"camera Small-S0001 was unplugged before"_qs))
        << result.errors.toStdString();
}

} // namespace
