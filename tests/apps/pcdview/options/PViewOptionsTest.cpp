// SPDX-License-Identifier: MIT
#include <apps/pcdview/options/PViewOptions.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <gtest/gtest.h>

namespace {

struct BadOptionRow {
    const char* name;
    QStringList words;
    const char* reason; ///< a part of the message
};

class PViewOptionsBadTest : public RowTest<BadOptionRow> {};

PStatus parse(const QStringList& words, PViewOptions& options) {
    QString answer;
    return PViewOptions::parse(QStringList{u"pcdview"_qs} + words, options, answer);
}

} // namespace

TEST(PViewOptionsTest, without_options_uses_the_system_s_cameras) {
    PViewOptions options;
    ASSERT_TRUE(parse({}, options).isOk());
    EXPECT_EQ(options.sdk, u"auto"_qs);
    EXPECT_TRUE(options.grab.isEmpty());
    EXPECT_TRUE(options.profile.isEmpty());
}

TEST(PViewOptionsTest, reads_the_profile_wherever_it_stands) {
    for (const QStringList& words : {QStringList{u"--sdk=sim"_qs, u"slide.json"_qs},
                                     QStringList{u"slide.json"_qs, u"--sdk=sim"_qs}}) {
        PViewOptions options;
        ASSERT_TRUE(parse(words, options).isOk());
        EXPECT_EQ(options.profile, u"slide.json"_qs);
        EXPECT_EQ(options.sdk, u"sim"_qs);
    }
}

TEST(PViewOptionsTest, prints_a_manual_page_with_every_option) {
    PViewOptions options;
    QString page;
    ASSERT_TRUE(PViewOptions::parse({u"pcdview"_qs, u"--manual"_qs}, options, page).isOk());
    EXPECT_TRUE(page.startsWith(u".TH PCDVIEW 1 "_qs)) << page.toStdString();
    for (const QCommandLineOption& option : PViewOptions::all()) {
        const QString name = u"\\fB\\-\\-"_qs + option.names().last().replace(u'-', u"\\-"_qs);
        EXPECT_TRUE(page.contains(name)) << name.toStdString();
    }
}

TEST(PViewOptionsTest, the_process_of_a_notice_is_started_with_options_that_it_reads) {
    PViewOptions options;
    ASSERT_TRUE(parse({u"--lang=ru"_qs, u"--theme=dark"_qs, u"--camera=1"_qs}, options).isOk());
    QStringList words = options.hangNoticeCommand();
    ASSERT_GT(words.size(), 3);
    words.remove(0, 3); // the program, and the platform, which Qt takes out
    PViewOptions ofNotice;
    const PStatus status = parse(words, ofNotice);
    ASSERT_TRUE(status.isOk()) << status.reason().toStdString();
    EXPECT_EQ(ofNotice.hangingViewer, QCoreApplication::applicationPid());
    EXPECT_EQ(ofNotice.language, u"ru"_qs);
    EXPECT_EQ(ofNotice.theme, u"dark"_qs);
    EXPECT_TRUE(ofNotice.camera.isEmpty());
}

TEST(PViewOptionsTest, a_picture_of_the_window_needs_no_notice) {
    PViewOptions options;
    ASSERT_TRUE(parse({u"--grab=w.png"_qs}, options).isOk());
    EXPECT_TRUE(options.hangNoticeCommand().isEmpty());
}

TEST(PViewOptionsTest, reads_every_option) {
    PViewOptions options;
    ASSERT_TRUE(parse({u"--sdk"_qs,         u"sim"_qs,   u"--scene"_qs,       u"s.json"_qs,
                       u"--plugin-path"_qs, u"/a"_qs,    u"--plugin-path"_qs, u"/b"_qs,
                       u"--camera"_qs,      u"1"_qs,     u"--lang"_qs,        u"ru"_qs,
                       u"--theme"_qs,       u"dark"_qs,  u"--log-level"_qs,   u"debug"_qs,
                       u"--grab"_qs,        u"w.png"_qs, u"--after"_qs,       u"50"_qs},
                      options)
                    .isOk());
    EXPECT_EQ(options.sdk, u"sim"_qs);
    EXPECT_EQ(options.scene, u"s.json"_qs);
    EXPECT_EQ(options.pluginPaths, (QStringList{u"/a"_qs, u"/b"_qs}));
    EXPECT_EQ(options.camera, u"1"_qs);
    EXPECT_EQ(options.language, u"ru"_qs);
    EXPECT_EQ(options.theme, u"dark"_qs);
    EXPECT_EQ(options.logFilter, u"debug"_qs);
    EXPECT_EQ(options.grab, u"w.png"_qs);
    EXPECT_EQ(options.grabAfter, std::chrono::milliseconds(50));
}

TEST(PViewOptionsTest, help_names_every_option) {
    PViewOptions options;
    QString answer;
    ASSERT_TRUE(PViewOptions::parse({u"pcdview"_qs, u"--help"_qs}, options, answer).isOk());
    for (const char* name : {"--sdk", "--scene", "--plugin-path", "--camera", "--lang", "--theme",
                             "--log-level", "--grab", "--after", "[PROFILE]"})
        EXPECT_TRUE(answer.contains(QString::fromLatin1(name))) << name;
}

TEST(PViewOptionsTest,
     starting_again_with_simulated_cameras_keeps_the_options_that_do_not_choose_a_camera) {
    EXPECT_EQ(PViewOptions::withSimulatedCameras(
                  {u"pcdview"_qs, u"a.pcdprofile.json"_qs, u"--sdk"_qs, u"auto"_qs, u"--lang=ru"_qs,
                   u"--scene=a.json"_qs, u"-c"_qs, u"1"_qs, u"--trace"_qs, u"a.trace"_qs,
                   u"--trace-frames"_qs, u"--plugin-path"_qs, u"p"_qs, u"--camera"_qs}),
              QStringList({u"a.pcdprofile.json"_qs, u"--lang=ru"_qs, u"--plugin-path"_qs, u"p"_qs,
                           u"--sdk"_qs, u"sim"_qs}));
    EXPECT_EQ(PViewOptions::withSimulatedCameras({u"pcdview"_qs}),
              QStringList({u"--sdk"_qs, u"sim"_qs}));
}

ROW_TEST(PViewOptionsBadTest, is_refused_with_what_was_expected) {
    PViewOptions options;
    const PStatus status = parse(GetParam().words, options);
    ASSERT_FALSE(status.isOk());
    EXPECT_TRUE(status.reason().contains(QString::fromLatin1(GetParam().reason)))
        << status.reason().toStdString();
}

ROWS(Words, PViewOptionsBadTest,
     BadOptionRow{"a_word_too_many",
                  {u"a.json"_qs, u"picture.png"_qs},
                  "\"picture.png\": expected one profile"},
     BadOptionRow{"a_notice_of_no_process",
                  {u"--hang-notice=0"_qs},
                  "\"0\" is not a value for --hang-notice: expected the number of a process"},
     BadOptionRow{"an_empty_profile", {QString()}, "expected a file"},
     BadOptionRow{"a_profile_and_a_picture_of_the_window",
                  {u"a.json"_qs, u"--grab=a.png"_qs},
                  "\"a.json\" cannot be applied with --grab"},
     BadOptionRow{"an_unknown_option", {u"--fast"_qs}, "fast"},
     BadOptionRow{"frames_of_no_trace", {u"--trace-frames"_qs}, "expected --trace FILE too"},
     BadOptionRow{"an_unknown_theme", {u"--theme"_qs, u"pink"_qs}, "system, light or dark"},
     BadOptionRow{"an_unknown_language",
                  {u"--lang=xx"_qs},
                  "\"xx\" is not a value for --lang: expected en or ru"},
     BadOptionRow{"an_empty_camera", {u"--camera"_qs, QString()}, "--camera"},
     BadOptionRow{"a_word_for_a_time",
                  {u"--grab"_qs, u"a.png"_qs, u"--after"_qs, u"soon"_qs},
                  "milliseconds"},
     BadOptionRow{"a_picture_of_an_unknown_format", {u"--grab"_qs, u"a.xyz"_qs}, ".png"});
