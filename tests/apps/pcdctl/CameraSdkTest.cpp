// SPDX-License-Identifier: MIT
// Which camera SDK a program loads.
#include <apps/pcdctl/CtlProcess.h>
#include <apps/pcdctl/CtlScene.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <QFile>

#include <dlfcn.h>
#include <link.h>
#include <sys/stat.h>

namespace {

QString readSdkKind(const CtlResult& result) {
    return result.json.value(u"sdk"_qs).toObject().value(u"kind"_qs).toString();
}

QJsonValue readSdkVersion(const CtlResult& result) {
    return result.json.value(u"sdk"_qs).toObject().value(u"version"_qs);
}

bool systemHasSdk() {
    void* const library = dlopen("libtoupcam.so", RTLD_NOW | RTLD_LOCAL);
    if (library != nullptr)
        dlclose(library);
    return library != nullptr;
}

bool hasSoname(const char* path) {
    void* const library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    link_map* map = nullptr;
    if (library == nullptr || dlinfo(library, RTLD_DI_LINKMAP, &map) != 0)
        throw std::runtime_error("cannot look into the library");
    for (const ElfW(Dyn)* entry = map->l_ld; entry->d_tag != DT_NULL; ++entry) {
        if (entry->d_tag == DT_SONAME)
            return true;
    }
    return false;
}

class CameraSdk : public FolderTest {};

TEST_F(CameraSdk, sim_is_the_simulator_that_comes_with_the_program) {
    const CtlResult result = runCtl({listWord, u"--sdk"_qs, u"sim"_qs, jsonWord});
    EXPECT_EQ(result.exitCode, 0);
    const QJsonObject sdk = result.json.value(u"sdk"_qs).toObject();
    EXPECT_EQ(sdk.value(u"kind"_qs).toString(), u"simulated"_qs);
    EXPECT_TRUE(sdk.value(u"path"_qs).toString().endsWith(u"/lib/pcd/sim/libtoupcam.so"_qs));
    EXPECT_FALSE(sdk.value(u"version"_qs).toString().isEmpty());
    EXPECT_EQ(result.errors, QString());
}

TEST_F(CameraSdk, a_library_without_a_shared_object_name_is_taken_whatever_its_file_is_called) {
    ASSERT_FALSE(hasSoname(UNNAMED_CAMERA_SDK));
    const QString library = path(u"cameras.bin"_qs);
    ASSERT_TRUE(QFile::copy(QStringLiteral(UNNAMED_CAMERA_SDK), library));
    const QString scene = CtlScene().addCamera().writeTo(path(u"scene.json"_qs));
    const CtlResult result = runCtl(
        {u"stream"_qs, u"-n"_qs, u"3"_qs, u"--sdk"_qs, library, u"--scene"_qs, scene, jsonWord});
    EXPECT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_EQ(result.json.value(u"camera"_qs).toString(), smallCameraId);
    EXPECT_EQ(result.json.value(u"frames"_qs).toInt(), 3);
    EXPECT_TRUE(result.json.value(u"simulated"_qs).toBool());
}

TEST_F(CameraSdk, a_library_that_is_not_there_is_named) {
    const QString library = path(u"none.so"_qs);
    const CtlResult result = runCtl({listWord, u"--sdk"_qs, library});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.errors.contains(u"cannot use \"%1\" as the camera SDK"_qs.arg(library)))
        << result.errors.toStdString();
}

TEST_F(CameraSdk, a_file_that_is_not_a_library_is_named) {
    const QString library = path(u"text.so"_qs);
    writeFile(library, "no library");
    const CtlResult result = runCtl({listWord, u"--sdk"_qs, library});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.errors.contains(library)) << result.errors.toStdString();
}

TEST_F(CameraSdk, a_pipe_is_not_waited_for) {
    const QString pipe = path(u"pipe.so"_qs);
    ASSERT_EQ(mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
    const CtlResult named = runCtl({listWord, u"--sdk"_qs, pipe});
    EXPECT_EQ(named.exitCode, 1);
    EXPECT_EQ(named.errors,
              u"pcdctl: cannot use \"%1\" as the camera SDK: it is not a file\n"_qs.arg(pipe));
    const CtlResult automatic =
        runCtl({listWord}, [&](CtlProcess& process) { process.with(u"TOUPCAM_LIBRARY"_qs, pipe); });
    EXPECT_EQ(automatic.errors, named.errors);
}

TEST_F(CameraSdk, a_library_that_is_not_a_camera_sdk_is_named) {
    const CtlResult result = runCtl({listWord, u"--sdk"_qs, QStringLiteral(NO_CAMERA_SDK)});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.errors.contains(u"it has no function Toupcam_EnumV2"_qs))
        << result.errors.toStdString();
}

TEST_F(CameraSdk, a_library_without_the_simulators_mark_is_the_makers) {
    const CtlResult result =
        runCtl({listWord, jsonWord, u"--sdk"_qs, QStringLiteral(EMPTY_CAMERA_SDK)});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(readSdkKind(result), u"maker"_qs);
    EXPECT_TRUE(result.json.value(u"cameras"_qs).isArray());
    EXPECT_TRUE(result.errors.contains(u"no camera found: connect one"_qs))
        << result.errors.toStdString();
}

TEST_F(CameraSdk, the_makers_library_reports_its_version) {
    const CtlResult result = runCtl(
        {listWord, jsonWord, u"--sdk"_qs, QStringLiteral(EMPTY_CAMERA_SDK)},
        [](CtlProcess& process) { process.with(u"EMPTY_CAMERA_SDK_VERSION"_qs, u"1.2.3"_qs); });
    EXPECT_EQ(readSdkVersion(result), QJsonValue(u"1.2.3"_qs));
}

TEST_F(CameraSdk, a_library_whose_version_is_a_null_pointer_has_none) {
    const CtlResult result =
        runCtl({listWord, jsonWord, u"--sdk"_qs, QStringLiteral(EMPTY_CAMERA_SDK)});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(readSdkKind(result), u"maker"_qs);
    EXPECT_TRUE(readSdkVersion(result).isUndefined());
}

TEST_F(CameraSdk, auto_takes_the_library_that_the_environment_names) {
    const CtlResult result = runCtl({listWord, jsonWord}, [](CtlProcess& process) {
        process.with(u"TOUPCAM_LIBRARY"_qs, QStringLiteral(EMPTY_CAMERA_SDK));
    });
    EXPECT_EQ(readSdkKind(result), u"maker"_qs);
    EXPECT_EQ(result.exitCode, 3);
}

TEST_F(CameraSdk, auto_takes_the_systems_library) {
    ASSERT_TRUE(QFile::copy(QStringLiteral(EMPTY_CAMERA_SDK), path(u"libtoupcam.so"_qs)));
    const CtlResult result = runCtl({listWord, jsonWord}, [this](CtlProcess& process) {
        process.with(u"LD_LIBRARY_PATH"_qs, path(QString()));
    });
    EXPECT_EQ(readSdkKind(result), u"maker"_qs);
    EXPECT_EQ(result.json.value(u"sdk"_qs).toObject().value(u"path"_qs).toString(),
              path(u"libtoupcam.so"_qs));
}

TEST_F(CameraSdk, auto_does_not_simulate_if_the_systems_library_cannot_be_loaded) {
    writeFile(path(u"libtoupcam.so"_qs), "no library");
    const CtlResult result = runCtl({listWord}, [this](CtlProcess& process) {
        process.with(u"LD_LIBRARY_PATH"_qs, path(QString()));
    });
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.output, QByteArray());
    EXPECT_TRUE(result.errors.startsWith(
        u"pcdctl: cannot use \"libtoupcam.so\" as the camera SDK: %1"_qs.arg(
            path(u"libtoupcam.so"_qs))))
        << result.errors.toStdString();
}

TEST_F(CameraSdk, auto_does_not_simulate_if_the_systems_library_is_a_link_to_nothing) {
    ASSERT_TRUE(QFile::link(path(u"gone"_qs), path(u"libtoupcam.so"_qs)));
    const CtlResult result = runCtl({listWord}, [this](CtlProcess& process) {
        process.with(u"LD_LIBRARY_PATH"_qs, path(QString()));
    });
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.errors.contains(path(u"libtoupcam.so"_qs))) << result.errors.toStdString();
}

TEST_F(CameraSdk, auto_without_any_library_says_that_cameras_are_simulated) {
    const CtlResult result = runCtl({listWord, jsonWord});
    EXPECT_EQ(readSdkKind(result), systemHasSdk() ? u"maker"_qs : u"simulated"_qs);
    EXPECT_EQ(result.errors.contains(u"the cameras are simulated"_qs), !systemHasSdk());
}

TEST_F(CameraSdk, a_scene_is_wrong_usage_with_an_sdk_that_is_not_simulated) {
    const QString scene = CtlScene().addCamera().writeTo(path(u"scene.json"_qs));
    const CtlResult result =
        runCtl({listWord, u"--sdk"_qs, QStringLiteral(EMPTY_CAMERA_SDK), u"--scene"_qs, scene});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.errors.contains(u"--scene needs simulated cameras"_qs))
        << result.errors.toStdString();
}

struct SceneRow {
    const char* name;
    const char* text;
    const char* message;
};

constexpr SceneRow brokenScenes[] = {
    {"text_that_is_not_json", "{\"cameras\": [", "line 1: "},
    {"a_key_that_is_unknown", R"({"cameras": [], "camera": 1})", "camera"},
    {"a_camera_without_an_id", R"({"cameras": [{"model": "M"}]})", "cameras[0].id"},
};

class BrokenScene : public FolderTest, public WithRow<SceneRow> {};

ROW_TEST(BrokenScene, is_wrong_usage_that_names_the_file_and_the_place) {
    const QString scene = path(u"broken.json"_qs);
    writeFile(scene, GetParam().text);
    const CtlResult result = runCtl({listWord, u"--sdk=sim"_qs, u"--scene"_qs, scene});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.errors.contains(u"scene \"%1\": "_qs.arg(scene)));
    EXPECT_TRUE(result.errors.contains(QString::fromLatin1(GetParam().message)))
        << result.errors.toStdString();
}

ROWS_IN(Pcdctl, BrokenScene, brokenScenes);

TEST_F(CameraSdk, a_scene_that_is_not_there_is_wrong_usage) {
    const QString scene = path(u"none.json"_qs);
    const CtlResult result = runCtl({listWord, u"--sdk=sim"_qs, u"--scene"_qs, scene});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.errors.contains(u"scene \"%1\": cannot be read: "_qs.arg(scene)))
        << result.errors.toStdString();
}

} // namespace
