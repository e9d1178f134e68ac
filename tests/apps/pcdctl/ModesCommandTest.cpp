// SPDX-License-Identifier: MIT
#include <apps/pcdctl/CtlProcess.h>
#include <apps/pcdctl/CtlScene.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <QTemporaryDir>

namespace {

class ModesCommand : public FolderTest {
protected:
    /// Runs "modes" with these arguments and two cameras, Small-S0001 and Small-T0002.
    CtlResult modes(const QStringList& arguments) const {
        const QString scene = CtlScene()
                                  .addCamera()
                                  .addCamera(u"cam-2"_qs, u"T0002"_qs)
                                  .setResolution(64, 48, 100)
                                  .writeTo(path(u"scene.json"_qs));
        return runCtl(QStringList{u"modes"_qs, u"--sdk=sim"_qs, u"--scene"_qs, scene} + arguments);
    }
};

QJsonObject mode(const char* id, int width, int height, bool current) {
    return {{u"id"_qs, QString::fromLatin1(id)},
            {u"name"_qs, u"%1x%2"_qs.arg(QString::number(width), QString::number(height))},
            {u"width"_qs, width},
            {u"height"_qs, height},
            {u"bitDepth"_qs, 24},
            {u"current"_qs, current}};
}

TEST_F(ModesCommand, names_each_mode_and_the_current_one_as_json) {
    const CtlResult result = modes({u"--json"_qs});
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_EQ(result.json.value(u"camera"_qs).toString(), smallCameraId);
    EXPECT_EQ(result.json.value(u"modes"_qs).toArray(),
              QJsonArray({mode("0", 320, 240, true), mode("1", 160, 120, false)}))
        << result.output.toStdString();
}

TEST_F(ModesCommand, marks_the_current_mode_for_users) {
    EXPECT_EQ(modes({}).output, "0    320x240       320 x 240 pixels, 24 bits  (current)\n"
                                "1    160x120       160 x 120 pixels, 24 bits\n");
}

struct CameraRow {
    const char* name;
    const char* text;
    const char* camera;  ///< the id expected; null: none
    const char* message; ///< without one: what the message must contain
};

constexpr CameraRow cameraChoices[] = {
    {"by_index", "1", "Small-T0002", nullptr},
    {"by_id", "Small-T0002", "Small-T0002", nullptr},
    {"by_a_beginning_no_other_has", "Small-T", "Small-T0002", nullptr},
    {"not_by_a_beginning_of_several", "Small", nullptr, "\"Small\" begins the ids of several"},
    {"not_by_an_unknown_id", "Large", nullptr, "no camera \"Large\""},
    {"not_by_an_index_too_high", "2", nullptr, "no camera 2: the cameras are numbered 0 to 1"},
};

class CameraChoice : public ModesCommand, public WithRow<CameraRow> {};

ROW_TEST(CameraChoice, is_made_or_ends_with_code_3) {
    const CameraRow& row = GetParam();
    const CtlResult result = modes({u"--json"_qs, u"-c"_qs, QString::fromLatin1(row.text)});
    if (row.camera != nullptr) {
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.json.value(u"camera"_qs).toString(), QString::fromLatin1(row.camera));
        return;
    }
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(result.output, QByteArray());
    EXPECT_TRUE(result.errors.contains(QString::fromLatin1(row.message)))
        << result.errors.toStdString();
}

ROWS_IN(Pcdctl, CameraChoice, cameraChoices);

TEST(ModesCommandOfASilentCamera, fails_without_an_output) {
    const QTemporaryDir folder;
    for (const QStringList& more : {QStringList(), QStringList(jsonWord)}) {
        const QString scene =
            CtlScene().addCamera().addFaults(silence()).writeTo(folder.filePath(u"scene.json"_qs));
        const CtlResult result =
            runCtl(QStringList{u"modes"_qs, u"--sdk=sim"_qs, u"--scene"_qs, scene} + more);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.output, "");
        EXPECT_TRUE(
            result.errors.endsWith(u"pcdctl: camera Small-S0001 did not report its modes\n"_qs))
            << result.errors.toStdString();
    }
}

TEST(ModesCommandOfASilentCamera, fails_if_one_size_cannot_be_read) {
    const QTemporaryDir folder;
    const QString scene = CtlScene()
                              .addCamera()
                              .addFault(failing(u"Toupcam_get_Resolution"_qs))
                              .writeTo(folder.filePath(u"scene.json"_qs));
    const CtlResult result = runCtl({u"modes"_qs, u"--sdk=sim"_qs, u"--scene"_qs, scene});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.output, "");
}

} // namespace
