// SPDX-License-Identifier: MIT
#include <apps/pcdctl/CtlFiles.h>
#include <apps/pcdctl/CtlProcess.h>
#include <apps/pcdctl/CtlScene.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>
#include <support/WaitUntil.h>

#include <QDir>

#include <csignal>

namespace {

class StreamSave : public FolderTest {
protected:
    CtlScene scene = CtlScene().addCamera();
    const QString pattern = path(u"run/f-###.png"_qs);

    QStringList arguments(const QStringList& more) const {
        const QString file = scene.writeTo(path(u"scene.json"_qs));
        return QStringList{u"stream"_qs, u"--sdk=sim"_qs, u"--scene"_qs, file,
                           u"--json"_qs, u"--save"_qs,    pattern} +
               more;
    }
    QString file(const char* number) const {
        return path(u"run/f-%1.png"_qs.arg(QLatin1String(number)));
    }
    /// Everything in the folder of the series, hidden files included.
    QStringList files() const {
        return QDir(path(u"run"_qs)).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
};

TEST_F(StreamSave, saves_every_frame_under_its_number_with_its_colours) {
    scene.setResolution(1003, 60, 50);
    const CtlResult result = runCtl(arguments({u"-n"_qs, u"4"_qs}));
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_EQ(result.json.value(u"saved"_qs).toInt(), 4);
    EXPECT_EQ(files(),
              QStringList({u"f-001.png"_qs, u"f-002.png"_qs, u"f-003.png"_qs, u"f-004.png"_qs}));
    for (const char* number : {"001", "002", "003", "004"}) {
        const QImage picture(file(number));
        EXPECT_EQ(picture.width(), 1003);
        EXPECT_EQ(patchColours(picture), u"red green blue black"_qs);
        EXPECT_EQ(picture.text(u"Frame"_qs).toInt(), QByteArray(number).toInt());
        EXPECT_EQ(picture.text(u"Simulated"_qs), u"yes"_qs);
    }
}

TEST_F(StreamSave, saves_no_mode_that_was_not_read) {
    scene.addFault(failing(u"Toupcam_get_eSize"_qs));
    const CtlResult result = runCtl(arguments({u"-n"_qs, u"1"_qs}));
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    const QImage picture(file("001"));
    EXPECT_EQ(picture.text(u"Gain"_qs), u"100 %"_qs);
    EXPECT_FALSE(picture.textKeys().contains(u"Mode"_qs)) << picture.text(u"Mode"_qs).toStdString();
}

TEST_F(StreamSave, saves_the_exposure_that_another_setting_has_set) {
    const CtlResult result =
        runCtl(arguments({u"-n"_qs, u"2"_qs, u"--set"_qs, u"extexposure.autoexpenabled=off"_qs,
                          u"--set"_qs, u"extexposure.exp=20"_qs}));
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    for (const char* number : {"001", "002"})
        EXPECT_EQ(QImage(file(number)).text(u"Exposure"_qs), u"20 ms (manual)"_qs);
}

TEST_F(StreamSave, after_an_unplug_every_saved_file_is_whole) {
    scene.addFault(unplugAfter(12));
    const CtlResult result = runCtl(arguments({u"-n"_qs, u"100000"_qs}));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.errors.contains(u"camera Small-S0001 was unplugged after "_qs));
    const QStringList saved = files();
    EXPECT_GE(saved.size(), 10);
    EXPECT_EQ(result.json.value(u"saved"_qs).toInt(), int(saved.size()));
    for (const QString& name : saved) {
        EXPECT_EQ(patchColours(QImage(path(u"run/"_qs + name))), u"red green blue black"_qs)
            << name.toStdString();
    }
}

TEST_F(StreamSave, ctrl_c_ends_it_with_every_frame_saved_that_was_taken) {
    CtlProcess process(arguments({}));
    process.start();
    const bool isSaving = waitUntil([this] { return files().contains(u"f-003.png"_qs); });
    process.sendSignal(SIGINT);
    ASSERT_TRUE(process.finish());
    EXPECT_TRUE(isSaving);
    EXPECT_EQ(process.exitCode(), 0) << process.errors().toStdString();
    const QJsonObject ledger = process.json().value(u"ledger"_qs).toObject();
    EXPECT_GE(files().size(), 3);
    EXPECT_EQ(process.json().value(u"saved"_qs).toInt(), int(files().size()));
    EXPECT_EQ(ledger.value(u"delivered"_qs).toInt(), int(files().size()));
    EXPECT_TRUE(files().filter(u".part"_qs).isEmpty());
}

TEST_F(StreamSave, files_that_exist_are_refused_before_the_camera_is_touched) {
    ASSERT_TRUE(QDir().mkpath(path(u"run"_qs)));
    writeFile(file("003"), "mine");
    const QString journal = path(u"journal"_qs);
    const CtlResult result = runCtl(arguments({u"-n"_qs, u"5"_qs}), [&](CtlProcess& process) {
        process.with(u"TOUPCAM_SIM_JOURNAL"_qs, journal);
    });
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.errors.contains(u"\"%1\" already exists"_qs.arg(file("003"))))
        << result.errors.toStdString();
    EXPECT_EQ(readFile(journal), QByteArray());
    EXPECT_EQ(files(), QStringList{u"f-003.png"_qs});
    EXPECT_EQ(readFile(file("003")), QByteArray("mine"));
}

TEST_F(StreamSave, a_file_that_is_found_in_the_way_later_is_left_alone_and_ends_the_run) {
    ASSERT_TRUE(QDir().mkpath(path(u"run"_qs)));
    writeFile(file("005"), "mine");
    const CtlResult result = runCtl(arguments({}));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.errors.contains(u"cannot save \"%1\": "_qs.arg(file("005"))))
        << result.errors.toStdString();
    EXPECT_EQ(readFile(file("005")), QByteArray("mine"));
    for (const char* number : {"001", "002", "003", "004"})
        EXPECT_FALSE(QImage(file(number)).isNull()) << number;
    EXPECT_TRUE(QDir(path(u"run"_qs)).entryList({u"*.part"_qs}, QDir::Files).isEmpty());
}

TEST_F(StreamSave, a_disk_that_takes_no_more_ends_the_run_and_leaves_no_half_files) {
    // Noise does not fit into so small a file.
    scene.set(u"source"_qs, QJsonObject{{u"kind"_qs, u"flat"_qs}});
    CtlProcess process(arguments({}));
    process.with([] { limitFileSize(4096); });
    ASSERT_TRUE(process.finish());
    EXPECT_EQ(process.exitCode(), 1);
    const QString error = process.json().value(u"error"_qs).toString();
    EXPECT_TRUE(error.startsWith(u"cannot save \"%1"_qs.arg(path(u"run/f-"_qs))))
        << error.toStdString();
    EXPECT_EQ(process.json().value(u"saved"_qs).toInt(), 0);
    EXPECT_EQ(files(), QStringList());
    EXPECT_TRUE(process.json().value(u"ledger"_qs).toObject().value(u"balanced"_qs).toBool());
}

TEST_F(StreamSave, a_folder_that_cannot_be_made_is_refused) {
    writeFile(path(u"run"_qs), "a file");
    const CtlResult result = runCtl(arguments({u"-n"_qs, u"5"_qs}));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.errors.contains(u"cannot be created"_qs)) << result.errors.toStdString();
}

} // namespace
