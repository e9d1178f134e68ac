// SPDX-License-Identifier: MIT
// The viewer as a program: its command line, its exit codes, the picture of its window.
#include <support/FolderTest.h>
#include <support/QtPrinters.h>
#include <support/WaitUntil.h>

#include <QImage>
#include <QProcess>
#include <QSet>

#include <unistd.h>

namespace {

class ProgramTest : public FolderTest {
protected:
    /// Gives the program settings of its own.
    void prepare(QProcess& process) const {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"XDG_CONFIG_HOME"_qs, path(u"config"_qs));
        if (!hasDisplay) {
            for (const auto* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
                environment.remove(QString::fromLatin1(name));
        }
        process.setProcessEnvironment(environment);
    }
    /// Runs the program to its end and returns its exit code.
    int run(const QStringList& words) {
        QProcess process;
        prepare(process);
        process.start(QStringLiteral(PCDVIEW_PROGRAM), words);
        EXPECT_TRUE(process.waitForFinished(60'000));
        output = QString::fromUtf8(process.readAllStandardOutput());
        errors = QString::fromUtf8(process.readAllStandardError());
        return process.exitCode();
    }

    /// Two cameras whose frames need hardly any time, for tests that do not check them.
    QString writeScene() {
        const QString file = path(u"scene.json"_qs);
        const QByteArray camera = R"("resolutions": [{"width": 64, "height": 48, "fps": 10}],
                                     "source": {"kind": "patches"}})";
        writeFile(file,
                  R"({"cameras": [{"id": "a", )" + camera + R"(, {"id": "b", )" + camera + "]}");
        return file;
    }

    /// The number of colours on a line through the middle.
    static qsizetype coloursInTheMiddle(const QImage& window) {
        QSet<QRgb> colours;
        for (int x = window.width() * 2 / 5; x < window.width() * 3 / 5; ++x)
            colours.insert(window.pixel(x, window.height() / 2));
        return colours.size();
    }

    bool hasDisplay = true;
    QString output;
    QString errors;
};

} // namespace

TEST_F(ProgramTest, help_goes_to_the_standard_output) {
    EXPECT_EQ(run({u"--help"_qs}), 0);
    EXPECT_TRUE(output.contains(u"--grab"_qs));
}

TEST_F(ProgramTest, a_wrong_option_is_wrong_usage) {
    EXPECT_EQ(run({u"--fast"_qs}), 2);
    EXPECT_TRUE(errors.contains(u"fast"_qs)) << errors.toStdString();
}

TEST_F(ProgramTest, a_scene_that_cannot_be_read_is_named) {
    EXPECT_EQ(run({u"--sdk"_qs, u"sim"_qs, u"--scene"_qs, path(u"none.json"_qs)}), 2);
    EXPECT_TRUE(errors.contains(u"none.json"_qs)) << errors.toStdString();
}

TEST_F(ProgramTest, its_calls_of_the_sdk_can_be_traced) {
    const QString trace = path(u"a.trace"_qs);
    const QStringList words{
        u"--sdk=sim"_qs, u"--scene"_qs, writeScene(),  u"--grab"_qs, path(u"window.png"_qs),
        u"--after"_qs,   u"100"_qs,     u"--trace"_qs, trace,        u"--trace-frames"_qs};
    ASSERT_EQ(run(words), 0) << errors.toStdString();
    const QByteArray lines = readFile(trace);
    EXPECT_TRUE(lines.contains("\"program\":\"pcdview\""));
    EXPECT_TRUE(lines.contains("\"name\":\"Toupcam_StartPushMode\""));
    EXPECT_TRUE(lines.contains("\"name\":\"Toupcam_Close\""));
    // Once more: nothing is replaced.
    EXPECT_EQ(run(words), 2);
    EXPECT_TRUE(errors.contains(u"cannot write the trace \"%1\": File exists"_qs.arg(trace)))
        << errors.toStdString();
    EXPECT_EQ(readFile(trace), lines);
}

TEST_F(ProgramTest, without_a_display_it_says_so) {
    hasDisplay = false;
    EXPECT_EQ(run({u"--sdk"_qs, u"sim"_qs}), 1);
    EXPECT_TRUE(errors.contains(u"there is no display"_qs)) << errors.toStdString();
}

TEST_F(ProgramTest, without_a_display_it_still_helps_and_takes_pictures) {
    hasDisplay = false;
    EXPECT_EQ(run({u"--help"_qs}), 0) << errors.toStdString();
    const QString file = path(u"window.png"_qs);
    EXPECT_EQ(run({u"--sdk"_qs, u"sim"_qs, u"--scene"_qs, writeScene(), u"--grab"_qs, file,
                   u"--after"_qs, u"100"_qs}),
              0)
        << errors.toStdString();
    EXPECT_FALSE(QImage(file).isNull());
}

TEST_F(ProgramTest, a_picture_of_its_window_shows_the_camera) {
    const QString file = path(u"window.png"_qs);
    qsizetype colours = 0;
    // On a busy machine the first frame may arrive after the picture: then wait longer for another.
    for (const QString& after : {u"2000"_qs, u"8000"_qs, u"16000"_qs}) {
        ASSERT_EQ(run({u"--sdk"_qs, u"sim"_qs, u"--camera"_qs, u"1"_qs, u"--theme"_qs, u"light"_qs,
                       u"--grab"_qs, file, u"--after"_qs, after}),
                  0)
            << errors.toStdString();
        const QImage window(file);
        ASSERT_GE(window.width(), 800);
        ASSERT_GE(window.height(), 500);
        colours = coloursInTheMiddle(window);
        if (colours > 20)
            return; // cells, not only the background
    }
    FAIL() << colours << " colours in the middle of the window";
}

TEST_F(ProgramTest, a_picture_that_cannot_be_saved_is_a_failure) {
    const QString file = path(u"no/such/folder/window.png"_qs);
    EXPECT_EQ(run({u"--sdk"_qs, u"sim"_qs, u"--scene"_qs, writeScene(), u"--grab"_qs, file,
                   u"--after"_qs, u"0"_qs}),
              1);
    EXPECT_TRUE(errors.contains(file)) << errors.toStdString();
}

TEST_F(ProgramTest, a_file_that_is_not_a_library_is_reported_in_the_window) {
    const QString file = path(u"window.png"_qs);
    EXPECT_EQ(run({u"--sdk"_qs, path(u"none.so"_qs), u"--grab"_qs, file, u"--after"_qs, u"0"_qs}),
              0);
    EXPECT_TRUE(errors.contains(u"none.so"_qs)) << errors.toStdString();
}

TEST_F(ProgramTest, a_camera_that_does_not_return_from_closing_does_not_keep_the_program) {
    const QString scene = path(u"scene.json"_qs);
    writeFile(scene, R"({"cameras": [{"id": "a", "source": {"kind": "patches"},
                                      "resolutions": [{"width": 64, "height": 48}]}],
                         "faults": [{"do": "delay", "function": "Toupcam_Stop", "ms": 3600000}]})");
    QProcess process;
    prepare(process);
    QProcessEnvironment environment = process.processEnvironment();
    environment.insert(u"PCD_CLOSING_SECONDS"_qs, u"0.2"_qs);
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QStringLiteral(PCDVIEW_PROGRAM),
                  {u"--sdk=sim"_qs, u"--scene"_qs, scene, u"--log-level=info"_qs});
    QByteArray logged;
    ASSERT_TRUE(waitUntil([&] {
        process.waitForReadyRead(100);
        return (logged += process.readAll()).contains("ready, cameras: 1");
    })) << logged.constData();
    process.terminate();
    ASSERT_TRUE(process.waitForFinished(60'000));
    logged += process.readAll();
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 0);
    EXPECT_TRUE(logged.contains("pcdview: a camera does not return")) << logged.constData();
}

TEST_F(ProgramTest, a_call_that_hangs_is_named_and_a_signal_ends_the_program) {
    // The camera is unplugged; the scan a second later does not return.
    const QString scene = path(u"scene.json"_qs);
    writeFile(scene, R"({"cameras": [{"id": "a", "source": {"kind": "patches"},
                                      "resolutions": [{"width": 64, "height": 48}]}],
                         "faults": [{"do": "unplug", "camera": "a", "afterFrames": 2},
                                    {"do": "delay", "function": "Toupcam_EnumV2",
                                     "ms": 3600000, "skip": 1}]})");
    QProcess process;
    prepare(process);
    QProcessEnvironment environment = process.processEnvironment();
    environment.insert(u"PCD_CLOSING_SECONDS"_qs, u"0.2"_qs);
    environment.insert(u"PCD_CALL_SECONDS"_qs, u"0.2"_qs);
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QStringLiteral(PCDVIEW_PROGRAM), {u"--sdk=sim"_qs, u"--scene"_qs, scene});
    QByteArray logged;
    ASSERT_TRUE(waitUntil([&] {
        process.waitForReadyRead(100);
        return (logged += process.readAll()).contains("waiting for Toupcam_EnumV2(0x");
    })) << logged.constData();
    process.terminate();
    ASSERT_TRUE(process.waitForFinished(60'000));
    logged += process.readAll();
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 1);
    EXPECT_TRUE(logged.contains("pcdview: still waiting for Toupcam_EnumV2(0x"))
        << logged.constData();
    EXPECT_TRUE(logged.contains("the program ends without it: Toupcam_EnumV2(0x"))
        << logged.constData();
}

TEST_F(ProgramTest, an_argument_that_is_no_text_is_refused) {
    QProcess process;
    prepare(process);
    process.setProgram(QStringLiteral(PCDVIEW_PROGRAM));
    process.setChildProcessModifier([] { execl(PCDVIEW_PROGRAM, "pcdview", "\xff", nullptr); });
    process.start();
    ASSERT_TRUE(process.waitForFinished(60'000));
    EXPECT_EQ(process.exitCode(), 2);
    const QByteArray text = process.readAllStandardError();
    EXPECT_TRUE(text.contains("argument 1, \"\\xff\", is not UTF-8")) << text.constData();
}

TEST_F(ProgramTest, unknown_values_in_the_environment_are_named) {
    const QString file = path(u"window.png"_qs);
    qputenv("PCD_LANG", "xx");
    qputenv("PCD_CLOSING_SECONDS", "never");
    EXPECT_EQ(
        run({u"--sdk=sim"_qs, u"--scene"_qs, writeScene(), u"--grab"_qs, file, u"--after=0"_qs}),
        0);
    qunsetenv("PCD_LANG");
    qunsetenv("PCD_CLOSING_SECONDS");
    EXPECT_EQ(errors.count(u"PCD_LANG: \"xx\" is not a language"_qs), 1) << errors.toStdString();
    EXPECT_EQ(errors.count(u"PCD_CLOSING_SECONDS: \"never\" is no time"_qs), 1)
        << errors.toStdString();
}

TEST_F(ProgramTest, a_signal_closes_it_as_the_user_does) {
    QProcess process;
    prepare(process);
    process.start(QStringLiteral(PCDVIEW_PROGRAM),
                  {u"--sdk=sim"_qs, u"--scene"_qs, writeScene(), u"--log-level=info"_qs});
    QByteArray logged;
    ASSERT_TRUE(waitUntil([&] {
        process.waitForReadyRead(100);
        return (logged += process.readAllStandardError()).contains("ready, cameras: 2");
    })) << logged.constData();
    process.terminate();
    ASSERT_TRUE(process.waitForFinished(60'000));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 0);
    // The layout was saved.
    EXPECT_TRUE(QFile::exists(path(u"config/pcd/pcdview.conf"_qs)));
}
