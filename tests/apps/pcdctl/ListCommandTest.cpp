// SPDX-License-Identifier: MIT
#include <apps/pcdctl/CtlProcess.h>
#include <apps/pcdctl/CtlScene.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>

#include <QImage>
#include <QSet>

#include <csignal>

namespace {

const QString sim = u"--sdk=sim"_qs;

class ListCommand : public FolderTest {
protected:
    QString sceneFile() const { return path(u"scene.json"_qs); }
};

TEST_F(ListCommand, lists_the_cameras_of_a_scene_as_json) {
    CtlScene().addCamera().addCamera(u"cam-2"_qs, u"S0002"_qs).writeTo(sceneFile());
    const CtlResult result = runCtl({listWord, sim, u"--scene"_qs, sceneFile(), jsonWord});
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    const QJsonArray expected{QJsonObject{{u"index"_qs, 0},
                                          {u"id"_qs, smallCameraId},
                                          {u"model"_qs, u"Small"_qs},
                                          {u"serial"_qs, u"S0001"_qs},
                                          {u"simulated"_qs, true}},
                              QJsonObject{{u"index"_qs, 1},
                                          {u"id"_qs, u"Small-S0002"_qs},
                                          {u"model"_qs, u"Small"_qs},
                                          {u"serial"_qs, u"S0002"_qs},
                                          {u"simulated"_qs, true}}};
    EXPECT_EQ(result.json.value(u"cameras"_qs).toArray(), expected) << result.output.toStdString();
}

TEST_F(ListCommand, says_for_users_that_cameras_are_simulated) {
    CtlScene().addCamera().writeTo(sceneFile());
    const CtlResult result = runCtl({listWord, sim, u"--scene"_qs, sceneFile()});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(result.output.contains("0      Small-S0001  Small  S0001       simulated\n"))
        << result.output.toStdString();
}

TEST_F(ListCommand, a_camera_that_fails_to_open_and_hangs_when_it_is_closed_again_is_named) {
    CtlScene()
        .addCamera()
        .set(u"model"_qs, QJsonValue::Null) // opened, but of no use
        .addFault(hanging(u"Toupcam_Close"_qs))
        .writeTo(sceneFile());
    CtlProcess process({listWord, sim, u"--scene"_qs, sceneFile()});
    process.with(u"PCD_CALL_SECONDS"_qs, u"0.1"_qs).start();
    ASSERT_TRUE(process.waitForErrors("pcdctl: waiting for Toupcam_Close(0x"));
    process.sendSignal(SIGINT);
    ASSERT_TRUE(process.waitForErrors("pcdctl: ended while waiting for Toupcam_Close(0x"));
    ASSERT_TRUE(process.finish());
    EXPECT_EQ(process.exitCode(), -1);
}

TEST_F(ListCommand, a_name_neither_controls_the_terminal_nor_looks_like_another_row) {
    const QString model = u"A\x1b[2J\n1      B"_qs;
    CtlScene().addCamera().set(u"model"_qs, model).writeTo(sceneFile());
    const CtlResult text =
        runCtl({listWord, sim, u"--scene"_qs, sceneFile(), u"--log-level=info"_qs});
    EXPECT_EQ(text.output,
              "index  id                        model               serial      kind\n"
              "0      A\\x1b[2J\\n1      B-S0001  A\\x1b[2J\\n1      B  S0001       simulated\n");
    EXPECT_FALSE(text.errors.contains(u'\x1b')) << text.errors.toStdString();
    EXPECT_TRUE(text.errors.contains(u"new device A\\x1b[2J\\n1      B"_qs))
        << text.errors.toStdString();
    const CtlResult json = runCtl({listWord, sim, u"--scene"_qs, sceneFile(), jsonWord});
    const QJsonValue camera = json.json.value(u"cameras"_qs).toArray().at(0);
    EXPECT_EQ(camera[u"model"_qs].toString(), model);
}

TEST_F(ListCommand, cameras_with_the_same_model_and_serial_have_different_ids) {
    CtlScene().addCamera().addCamera(u"cam-2"_qs).writeTo(sceneFile());
    const CtlResult result = runCtl({listWord, sim, u"--scene"_qs, sceneFile(), jsonWord});
    QSet<QString> ids;
    for (const QJsonValue& camera : result.json.value(u"cameras"_qs).toArray())
        ids.insert(camera.toObject().value(u"id"_qs).toString());
    EXPECT_EQ(ids.size(), 2) << result.output.toStdString();
}

TEST_F(ListCommand, without_a_camera_prints_an_empty_list_and_ends_with_code_3) {
    CtlScene().writeTo(sceneFile());
    const CtlResult result = runCtl({listWord, sim, u"--scene"_qs, sceneFile(), jsonWord});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(result.json.value(u"cameras"_qs), QJsonValue(QJsonArray()));
    EXPECT_TRUE(result.errors.contains(u"--sdk sim"_qs)) << result.errors.toStdString();
}

TEST_F(ListCommand, a_plugin_path_that_is_not_there_is_named_and_the_rest_works) {
    const QString missing = path(u"plugins"_qs);
    const CtlResult result = runCtl({listWord, sim, u"--plugin-path"_qs, missing});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(result.errors.contains(u"plugin \"%1\" not loaded: "_qs.arg(missing)))
        << result.errors.toStdString();
}

TEST_F(ListCommand, every_plugin_that_cannot_be_loaded_is_named_with_the_reason) {
    writeFile(path(u"one.so"_qs), "no plugin");
    writeFile(path(u"two.so"_qs), "no plugin either");
    const CtlResult result = runCtl({listWord, sim, u"--plugin-path"_qs, path(u"one.so"_qs),
                                     u"--plugin-path"_qs, path(u"two.so"_qs)});
    EXPECT_EQ(result.exitCode, 0);
    for (const QString& name : {u"one.so"_qs, u"two.so"_qs}) {
        EXPECT_TRUE(result.errors.contains(u"plugin \"%1\" not loaded: "_qs.arg(path(name))))
            << result.errors.toStdString();
    }
}

TEST_F(ListCommand, a_picture_in_a_scene_is_found_beside_the_scene) {
    QImage picture(64, 48, QImage::Format_RGB32);
    picture.fill(Qt::white);
    ASSERT_TRUE(picture.save(path(u"slide.png"_qs)));
    CtlScene()
        .addCamera()
        .set(u"source"_qs, QJsonObject{{u"kind"_qs, u"picture"_qs}, {u"path"_qs, u"slide.png"_qs}})
        .writeTo(sceneFile());
    const CtlResult result = runCtl({listWord, sim, u"--scene"_qs, sceneFile()});
    EXPECT_EQ(result.exitCode, 0) << result.errors.toStdString();
}

} // namespace
