// SPDX-License-Identifier: MIT
#include <apps/pcdctl/CtlFiles.h>
#include <apps/pcdctl/CtlProcess.h>
#include <apps/pcdctl/CtlScene.h>

#include <apps/common/reading/OmeXml.h>
#include <apps/common/reading/TiffReadBack.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>
#include <support/WaitUntil.h>

#include <QDir>
#include <QFileInfo>

#include <csignal>

namespace {

constexpr qint64 frameBytes = 320 * 240 * 3;

class RecordCommand : public FolderTest {
protected:
    CtlScene scene = CtlScene().addCamera();
    QString file = path(u"run/a.ome.tif"_qs);

    QStringList arguments(const QStringList& more) const {
        const QString sceneFile = scene.writeTo(path(u"scene.json"_qs));
        return QStringList{u"record"_qs, u"--sdk=sim"_qs, u"--scene"_qs, sceneFile,
                           u"--json"_qs, u"-o"_qs,        file} +
               more;
    }
    CtlResult record(const QStringList& more) const { return runCtl(arguments(more)); }
    /// Starts a recording and waits until some frames are in the file.
    void startAndWaitForFrames(CtlProcess& process) const {
        process.start();
        ASSERT_TRUE(waitUntil([&] { return QFileInfo(file).size() > 10 * frameBytes; },
                              std::chrono::minutes(2)));
    }
    OmeXml xml() const { return OmeXml(TiffReadBack(file).description()); }
    /// The number of pictures in the stack; each must show the patches of the scene.
    int soundPictures() const {
        const TiffReadBack tiff(file);
        EXPECT_TRUE(tiff.isOpen());
        for (int i = 0; i < tiff.pictures(); ++i) {
            tiff.select(i);
            EXPECT_EQ(patchColours(tiff.image()), u"red green blue black"_qs) << i;
        }
        return tiff.pictures();
    }
    QStringList files() const {
        return QDir(path(u"run"_qs)).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
};

/// What an independent reader reports of a stack.
QJsonObject readElsewhere(const QString& file) {
    QProcess reader;
    reader.start(QStringLiteral(OME_READER_PYTHON), {QStringLiteral(OME_READER_SCRIPT), file});
    EXPECT_TRUE(reader.waitForFinished(60'000));
    EXPECT_EQ(reader.exitCode(), 0) << reader.readAllStandardError().toStdString();
    return QJsonDocument::fromJson(reader.readAllStandardOutput()).object();
}

/// Expects that program to find this number of pictures in the stack, all with the patches.
void expectSoundElsewhere(const QString& file, int pictures) {
    const QJsonObject found = readElsewhere(file);
    EXPECT_TRUE(found.value(u"isOme"_qs).toBool());
    EXPECT_EQ(found.value(u"axes"_qs).toString(), u"TYXS"_qs);
    EXPECT_EQ(found.value(u"shape"_qs).toArray(), QJsonArray({pictures, 240, 320, 3}));
    EXPECT_EQ(found.value(u"type"_qs).toString(), u"uint8"_qs);
    const QJsonArray patches{QJsonArray{255, 0, 0}, QJsonArray{0, 255, 0}, QJsonArray{0, 0, 255},
                             QJsonArray{0, 0, 0}};
    const QJsonArray colours = found.value(u"colours"_qs).toArray();
    EXPECT_EQ(colours.size(), pictures);
    for (const QJsonValue& ofOne : colours)
        EXPECT_EQ(ofOne.toArray(), patches);
}

QJsonObject readRecording(const QJsonObject& json) {
    return json.value(u"recording"_qs).toObject();
}

int written(const QJsonObject& json) {
    return readRecording(json).value(u"written"_qs).toInt();
}

/// The attribute DeltaT of every plane, in seconds.
QList<double> times(const OmeXml& xml) {
    QList<double> all;
    for (const OmeXml::Element& plane : xml.elements("Plane"))
        all.append(plane.attributes.value(u"DeltaT"_qs).toDouble());
    return all;
}

TEST_F(RecordCommand, ten_frames_are_in_the_stack_with_their_colours_and_metadata) {
    const CtlResult result = record({u"-n"_qs, u"10"_qs, u"--pixel-size=0.345"_qs});
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_EQ(result.errors, QString());
    EXPECT_EQ(result.json.value(u"file"_qs).toString(), file);
    EXPECT_EQ(written(result.json), 10);
    EXPECT_TRUE(readRecording(result.json).value(u"balanced"_qs).toBool());
    EXPECT_EQ(soundPictures(), 10);
    EXPECT_EQ(files(), QStringList{u"a.ome.tif"_qs});
    const OmeXml document = xml();
    EXPECT_EQ(document.complaints(), QString());
    EXPECT_EQ(document.attribute("Pixels", "SizeT"), u"10"_qs);
    EXPECT_EQ(document.elements("Plane").size(), 10);
    EXPECT_EQ(document.attribute("Pixels", "PhysicalSizeX"), u"0.345"_qs);
    EXPECT_EQ(document.attribute("Detector", "Model"), u"Small"_qs);
    EXPECT_EQ(document.attribute("Detector", "SerialNumber"), u"S0001"_qs);
    EXPECT_EQ(document.attribute("Plane", "ExposureTime"), u"1"_qs);
    EXPECT_EQ(document.attribute("Plane", "ExposureTimeUnit"), u"ms"_qs);
    EXPECT_EQ(document.attribute("DetectorSettings", "Gain"), u"1"_qs);
    EXPECT_EQ(document.attribute("DetectorSettings", "Binning"), u"1x1"_qs);
    EXPECT_TRUE(document.attribute("OME", "Creator").startsWith(u"pcdctl "_qs));
    EXPECT_EQ(document.note(u"Simulated"_qs), u"yes"_qs);
    EXPECT_EQ(document.note(u"Binning"_qs), u"No binning"_qs);
    EXPECT_EQ(document.note(u"Complete"_qs), u"yes"_qs);
    EXPECT_EQ(document.note(u"Frames"_qs), u"1-10"_qs);
    EXPECT_EQ(document.note(u"Camera frames delivered"_qs), u"10"_qs);
    EXPECT_EQ(document.note(u"Camera frames waiting"_qs), u"0"_qs);
}

TEST_F(RecordCommand, an_independent_reader_finds_size_number_exposure_and_colours) {
    ASSERT_EQ(record({u"-n"_qs, u"3"_qs}).exitCode, 0);
    expectSoundElsewhere(file, 3);
    EXPECT_EQ(readElsewhere(file).value(u"exposures"_qs).toArray(), QJsonArray({1, 1, 1}));
}

TEST_F(RecordCommand, the_temperature_of_a_cooled_sensor_is_in_the_stack) {
    scene.set(u"flags"_qs, QJsonArray{u"TEC_ONOFF"_qs});
    ASSERT_EQ(record({u"-n"_qs, u"1"_qs}).exitCode, 0);
    const OmeXml document = xml();
    EXPECT_EQ(document.complaints(), QString());
    const double degrees = document.attribute("ImagingEnvironment", "Temperature").toDouble();
    EXPECT_GT(degrees, 15); // room temperature
    EXPECT_LT(degrees, 50);
    EXPECT_EQ(document.attribute("ImagingEnvironment", "TemperatureUnit"), u"°C"_qs);
}

TEST_F(RecordCommand, mode_profile_and_settings_are_applied_before_the_first_frame) {
    const QStringList camera{u"--sdk=sim"_qs, u"--scene"_qs, scene.writeTo(path(u"scene.json"_qs))};
    ASSERT_EQ(runCtl(camera + QStringList{u"profile"_qs, u"save"_qs, path(u"slide.json"_qs),
                                          u"--set=contrast=12"_qs})
                  .exitCode,
              0);
    const CtlResult result =
        record({u"-n2"_qs, u"--mode=160x120"_qs, u"--profile"_qs, path(u"slide.json"_qs),
                u"--set=binning=Add 2x2"_qs, u"--set=autoexpottime=2500"_qs});
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    const TiffReadBack tiff(file);
    EXPECT_EQ(tiff.width(), 80);
    EXPECT_EQ(tiff.height(), 60);
    EXPECT_EQ(xml().note(u"Contrast"_qs), u"12"_qs);
    EXPECT_EQ(xml().attribute("DetectorSettings", "Binning"), u"2x2"_qs);
    EXPECT_EQ(xml().attribute("Plane", "ExposureTime"), u"2.5"_qs);
}

TEST_F(RecordCommand, without_json_it_prints_what_was_recorded) {
    QStringList words = arguments({u"-n"_qs, u"5"_qs});
    words.removeOne(u"--json"_qs);
    const CtlResult result = runCtl(words);
    EXPECT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_TRUE(result.output.contains("Small-S0001 (simulated), mode 320x240: 5 frames in "))
        << result.output.toStdString();
    EXPECT_TRUE(result.output.contains("  balanced\n")) << result.output.toStdString();
    EXPECT_TRUE(result.output.endsWith("Recorded: 5 of 5 frames in " + file.toUtf8() + '\n'))
        << result.output.toStdString();
}

TEST_F(RecordCommand, one_frame_is_not_called_frames) {
    QStringList words = arguments({u"-n"_qs, u"1"_qs});
    words.removeOne(u"--json"_qs);
    const CtlResult result = runCtl(words);
    EXPECT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_TRUE(result.output.contains("mode 320x240: 1 frame in ")) << result.output.toStdString();
    EXPECT_TRUE(result.output.contains("Recorded: 1 of 1 frame in "))
        << result.output.toStdString();
}

TEST_F(RecordCommand, a_pattern_makes_a_series_of_files) {
    for (const char* ending : {"png", "tif"}) {
        file = path(u"run/f-##.%1"_qs.arg(QLatin1String(ending)));
        const CtlResult result = record({u"-n"_qs, u"3"_qs});
        ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
        EXPECT_EQ(written(result.json), 3);
    }
    EXPECT_EQ(files(), QStringList({u"f-01.png"_qs, u"f-01.tif"_qs, u"f-02.png"_qs, u"f-02.tif"_qs,
                                    u"f-03.png"_qs, u"f-03.tif"_qs}));
    for (const QString& name : files())
        EXPECT_EQ(patchColours(QImage(path(u"run/"_qs + name))), u"red green blue black"_qs);
}

TEST_F(RecordCommand, a_time_counts_from_the_first_frame) {
    const CtlResult result = record({u"-t"_qs, u"0.5"_qs});
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_GT(written(result.json), 0);
    const int afterEnd = readRecording(result.json).value(u"after_end"_qs).toInt();
    EXPECT_EQ(result.json.value(u"frames"_qs).toInt(), written(result.json) + afterEnd);
    EXPECT_EQ(soundPictures(), written(result.json));
    EXPECT_TRUE(TiffReadBack(file).isBig()); // its final size was unknown
    for (const double time : times(xml()))
        EXPECT_LT(time, 0.5);
}

/// How many numbers a text like "1-20, 22, 30-31" names.
int countNumbers(const QString& text) {
    int count = 0;
    for (const QString& run : text.split(u", "_qs))
        count += run.section(u'-', -1).toInt() - run.section(u'-', 0, 0).toInt() + 1;
    return count;
}

TEST_F(RecordCommand, a_time_lapse_takes_the_first_frame_at_once_and_one_each_interval) {
    const CtlResult result = record({u"-n"_qs, u"4"_qs, u"--interval=0.2"_qs});
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_EQ(soundPictures(), 4);
    const QList<double> taken = times(xml());
    ASSERT_EQ(taken.size(), 4);
    EXPECT_EQ(taken.at(0), 0);
    for (int i = 1; i < 4; ++i)
        EXPECT_GE(taken.at(i), 0.2 * i - 0.1) << i; // early by half an interval at most
    const int all = result.json.value(u"frames"_qs).toInt();
    EXPECT_GT(all, 4);
    const QJsonObject tally = readRecording(result.json);
    EXPECT_GT(tally.value(u"not_due"_qs).toInt(), 0);
    EXPECT_EQ(4 + tally.value(u"not_due"_qs).toInt() + tally.value(u"after_end"_qs).toInt(), all);
    // Between two frames others were left out; not between all, where the camera stalled.
    const QString numbers = xml().note(u"Frames"_qs);
    EXPECT_GE(numbers.count(u", "_qs), 1) << numbers.toStdString();
    EXPECT_EQ(countNumbers(numbers), 4) << numbers.toStdString();
}

TEST_F(RecordCommand, frames_of_the_stream_that_a_white_balance_had_before_are_not_in_the_ledger) {
    const CtlResult result = record({u"-n"_qs, u"3"_qs, u"--set=awbonce"_qs});
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    const QJsonObject ledger = result.json.value(u"ledger"_qs).toObject();
    EXPECT_GT(ledger.value(u"delivered"_qs).toInt(), 3);
    EXPECT_EQ(xml().note(u"Camera frames delivered"_qs), u"3"_qs);
    const int notWanted = xml().note(u"Camera frames not_wanted"_qs).toInt();
    EXPECT_EQ(xml().note(u"Camera frames produced"_qs).toInt(), 3 + notWanted);
}

TEST_F(RecordCommand, a_frame_that_never_became_a_picture_is_reported_under_completeness) {
    scene.addFault({{u"do"_qs, u"pushMalformed"_qs},
                    {u"camera"_qs, u"cam-1"_qs},
                    {u"afterFrames"_qs, 3},
                    {u"width"_qs, 320},
                    {u"height"_qs, 240},
                    {u"bits"_qs, 24},
                    {u"sizeImage"_qs, 10}});
    ASSERT_EQ(record({u"-n"_qs, u"10"_qs}).exitCode, 0);
    EXPECT_EQ(xml().complaints(), QString());
    EXPECT_EQ(xml().note(u"Complete"_qs),
              u"yes, but frames of the camera are missing: 1 dropped: wrong size"_qs);
    EXPECT_EQ(xml().note(u"Camera frames bad_size"_qs), u"1"_qs);
    EXPECT_EQ(xml().note(u"Frames"_qs), u"1-10"_qs);
}

TEST_F(RecordCommand, after_an_unplug_the_stack_is_whole_and_says_why_it_is_short) {
    scene.addFault(unplugAfter(12));
    const CtlResult result = record({u"-n"_qs, u"100000"_qs});
    EXPECT_EQ(result.exitCode, 1);
    const int pictures = soundPictures();
    EXPECT_GE(pictures, 10);
    EXPECT_EQ(written(result.json), pictures);
    EXPECT_EQ(readRecording(result.json).value(u"not_taken"_qs).toInt(), 100'000 - pictures);
    EXPECT_TRUE(readRecording(result.json).value(u"balanced"_qs).toBool());
    const QString message = u"camera Small-S0001 was unplugged after %1 frames"_qs.arg(pictures);
    EXPECT_TRUE(result.errors.contains(message)) << result.errors.toStdString();
    EXPECT_EQ(xml().complaints(), QString());
    EXPECT_EQ(xml().note(u"Complete"_qs), u"no: "_qs + message);
    EXPECT_EQ(xml().attribute("Pixels", "SizeT").toInt(), pictures);
}

TEST_F(RecordCommand, ctrl_c_ends_a_recording_without_a_set_end_as_it_should) {
    CtlProcess process(arguments({}));
    startAndWaitForFrames(process);
    process.sendSignal(SIGINT);
    ASSERT_TRUE(process.finish());
    EXPECT_EQ(process.exitCode(), 0) << process.errors().toStdString();
    EXPECT_EQ(soundPictures(), written(process.json()));
    EXPECT_EQ(xml().attribute("Pixels", "SizeT").toInt(), written(process.json()));
    EXPECT_EQ(xml().note(u"Complete"_qs), u"yes"_qs);
}

TEST_F(RecordCommand, ctrl_c_before_a_set_end_gives_a_whole_stack_and_code_1) {
    CtlProcess process(arguments({u"-n"_qs, u"1000000"_qs}));
    startAndWaitForFrames(process);
    process.sendSignal(SIGINT);
    ASSERT_TRUE(process.finish());
    EXPECT_EQ(process.exitCode(), 1);
    EXPECT_EQ(soundPictures(), written(process.json()));
    EXPECT_EQ(xml().complaints(), QString());
    EXPECT_TRUE(xml().note(u"Complete"_qs).startsWith(u"no: interrupted after "_qs));
}

TEST_F(RecordCommand, killed_in_the_middle_it_leaves_a_valid_stack_of_the_frames_so_far) {
    CtlProcess process(arguments({}));
    startAndWaitForFrames(process);
    process.sendSignal(SIGKILL);
    ASSERT_TRUE(process.finish());
    const int pictures = soundPictures();
    EXPECT_GE(pictures, 9);
    EXPECT_EQ(xml().complaints(), QString());
    // The last picture may not be counted yet.
    const int counted = xml().attribute("Pixels", "SizeT").toInt();
    EXPECT_TRUE(counted == pictures || counted == pictures - 1) << counted << ' ' << pictures;
    EXPECT_TRUE(xml().note(u"Complete"_qs).startsWith(u"no: the recording was cut short"_qs));
    EXPECT_EQ(xml().note(u"Simulated"_qs), u"yes"_qs);
    expectSoundElsewhere(file, counted);
}

TEST_F(RecordCommand, a_disk_that_takes_no_more_ends_it_and_the_frames_before_stay) {
    CtlProcess process(arguments({}));
    process.with([] { limitFileSize(4 * frameBytes); });
    ASSERT_TRUE(process.finish());
    EXPECT_EQ(process.exitCode(), 1);
    const QString errors = QString::fromUtf8(process.errors());
    EXPECT_TRUE(errors.contains(u"cannot save \"%1\": "_qs.arg(file))) << errors.toStdString();
    EXPECT_EQ(soundPictures(), 3);
    EXPECT_EQ(written(process.json()), 3);
    EXPECT_TRUE(readRecording(process.json()).value(u"balanced"_qs).toBool());
    EXPECT_EQ(xml().complaints(), QString());
    EXPECT_EQ(xml().attribute("Pixels", "SizeT").toInt(), 3);
    EXPECT_EQ(xml().note(u"Complete"_qs),
              u"no: "_qs + process.json().value(u"error"_qs).toString());
    expectSoundElsewhere(file, 3);
}

TEST_F(RecordCommand, files_that_exist_are_refused_before_the_camera_is_touched) {
    ASSERT_TRUE(QDir().mkpath(path(u"run"_qs)));
    for (const char* name : {"run/a.ome.tif", "run/f-2.png"})
        writeFile(path(QLatin1String(name)), "mine");
    for (const char* name : {"run/a.ome.tif", "run/f-#.png"}) {
        file = path(QLatin1String(name));
        const QString journal = path(u"journal"_qs);
        const CtlResult result = runCtl(arguments({u"-n"_qs, u"5"_qs}), [&](CtlProcess& process) {
            process.with(u"TOUPCAM_SIM_JOURNAL"_qs, journal);
        });
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_TRUE(result.errors.contains(u"already exists"_qs)) << result.errors.toStdString();
        EXPECT_EQ(readFile(journal), QByteArray());
    }
    EXPECT_EQ(readFile(path(u"run/a.ome.tif"_qs)), QByteArray("mine"));
    EXPECT_EQ(files(), QStringList({u"a.ome.tif"_qs, u"f-2.png"_qs}));
}

TEST_F(RecordCommand, a_camera_that_sends_nothing_leaves_no_file) {
    scene.setResolution(320, 240, 0.01);
    const CtlResult result = record({u"-n"_qs, u"5"_qs, u"--timeout=0.3"_qs});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.errors.contains(u"sent no frame for 0.3 s"_qs))
        << result.errors.toStdString();
    EXPECT_EQ(files(), QStringList());
    EXPECT_EQ(readRecording(result.json).value(u"not_taken"_qs).toInt(), 5);
}

TEST_F(RecordCommand, wrong_usage_is_named) {
    const auto refuses = [&](const QStringList& words, const QString& message) {
        const CtlResult result = runCtl(QStringList{u"record"_qs, u"--sdk=sim"_qs} + words);
        EXPECT_EQ(result.exitCode, 2) << words.join(u' ').toStdString();
        EXPECT_TRUE(result.errors.contains(message)) << result.errors.toStdString();
    };
    refuses({}, u"record needs an output file: expected -o FILE"_qs);
    refuses({u"-o"_qs, u"a-#.ome.tif"_qs}, u"expected a name without #"_qs);
    refuses({u"-o"_qs, u"a.ome.tif"_qs, u"-n1048577"_qs}, u"at most 1048576 frames"_qs);
    refuses({u"-o"_qs, u"a.tif"_qs}, u"one with a run of #"_qs);
    refuses({u"-o"_qs, u"a-#.jpg"_qs}, u"is not the name of a picture file"_qs);
    refuses({u"-o"_qs, u"a.ome.tif"_qs, u"--pixel-size=0"_qs}, u"a number of micrometres"_qs);
    refuses({u"-o"_qs, u"a.ome.tif"_qs, u"--interval=-1"_qs}, u"a number of seconds"_qs);
    refuses({u"-o"_qs, u"a.ome.tif"_qs, u"-n1"_qs, u"-t1"_qs}, u"--frames and --time"_qs);
}

} // namespace
