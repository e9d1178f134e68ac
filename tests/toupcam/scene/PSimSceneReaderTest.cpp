// SPDX-License-Identifier: MIT
#include <toupcam/SimTestSupport.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace {

/// A scene with an error in it, and what the message must name.
struct WrongRow {
    const char* name;
    const char* scene;
    std::vector<const char*> named;
};

const WrongRow wrong[] = {
    {"text that is not JSON", "{\n\"cameras\": [}", {"line 2", "JSON"}},
    {"array instead of an object", "[]", {"scene", "object"}},
    {"empty text", "", {"JSON"}},
    {"unknown key of the scene", R"({"camera": []})", {"scene", "\"camera\"", "cameras"}},
    {"cameras that are not an array", R"({"cameras": 5})", {"scene.cameras", "5", "array"}},
    {"camera that is not an object", R"({"cameras": [7]})", {"scene.cameras[0]", "7", "object"}},
    {"camera without an id", R"({"cameras": [{}]})", {"scene.cameras[0].id", "nothing", "string"}},
    {"id with a blank", R"({"cameras": [{"id": "a b"}]})", {"scene.cameras[0].id", "a b", "ASCII"}},
    {"empty id", R"({"cameras": [{"id": ""}]})", {"scene.cameras[0].id", "1 to 64"}},
    {"camera without resolutions",
     R"({"cameras": [{"id": "a"}]})",
     {"scene.cameras[0].resolutions", "1 to 16"}},
    {"resolution without a height",
     R"({"cameras": [{"id": "a", "resolutions": [{"width": 64}]}]})",
     {"scene.cameras[0].resolutions[0].height", "nothing", "whole number"}},
    {"resolution with half a pixel",
     R"({"cameras": [{"id": "a", "resolutions": [{"width": 64.5, "height": 64}]}]})",
     {"scene.cameras[0].resolutions[0].width", "64.5", "whole number from 16 to 16384"}},
    {"frame rate of zero",
     R"({"cameras": [{"id": "a", "resolutions": [{"width": 64, "height": 64, "fps": 0}]}]})",
     {"scene.cameras[0].resolutions[0].fps", "0 found", "0.01"}},
    {"unknown flag",
     R"({"cameras": [{"id": "a", "flags": ["WINGS"]}]})",
     {"scene.cameras[0].flags[0]", "WINGS", "USB30"}},
    {"flags that are not a number",
     R"({"cameras": [{"id": "a", "flags": "many"}]})",
     {"scene.cameras[0].flags", "many", "hexadecimal"}},
    {"16 bits",
     R"({"cameras": [{"id": "a", "bits": 16, "resolutions": [{"width": 64, "height": 64}]}]})",
     {"scene.cameras[0].bits", "16", "8 (grey) or 24 (colour)"}},
    {"serial that is too long",
     R"({"cameras": [{"id": "a", "serial": "12345678901234567890123456789012"}]})",
     {"scene.cameras[0].serial", "31 bytes"}},
    {"two cameras with one id",
     R"({"cameras": [{"id": "a", "resolutions": [{"width": 64, "height": 64}]},
                     {"id": "a", "resolutions": [{"width": 64, "height": 64}]}]})",
     {"scene.cameras[1].id", "\"a\"", "no other camera"}},
    {"exposure range upside down",
     R"({"cameras": [{"id": "a", "resolutions": [{"width": 64, "height": 64}],
                      "exposure": {"min": 100, "max": 50}}]})",
     {"scene.cameras[0].exposure.max", "50", "from 100"}},
    {"unknown key of a sensor",
     R"({"cameras": [{"id": "a", "resolutions": [{"width": 64, "height": 64}],
                      "sensor": {"noise": 1}}]})",
     {"scene.cameras[0].sensor", "\"noise\"", "readNoise"}},
    {"switch that is a number",
     R"({"cameras": [{"id": "a", "resolutions": [{"width": 64, "height": 64}], "plugged": 1}]})",
     {"scene.cameras[0].plugged", "1", "true or false"}},
    {"unknown kind of source",
     R"({"cameras": [{"id": "a", "resolutions": [{"width": 64, "height": 64}],
                      "source": {"kind": "cheese"}}]})",
     {"scene.cameras[0].source.kind", "cheese", "specimen"}},
    {"key that belongs to another kind of source",
     R"({"cameras": [{"id": "a", "resolutions": [{"width": 64, "height": 64}],
                      "source": {"kind": "patches", "frames": 3}}]})",
     {"scene.cameras[0].source", "\"frames\"", "kind"}},
    {"picture that is not there",
     R"({"cameras": [{"id": "a", "resolutions": [{"width": 64, "height": 64}],
                      "source": {"kind": "picture", "path": "no-such-picture.png"}}]})",
     {"scene.cameras[0].source.path", "no-such-picture.png", "picture file"}},
    {"fault of an unknown camera",
     R"({"faults": [{"do": "unplug", "camera": "x", "atMs": 1}]})",
     {"scene.faults[0].camera", "\"x\"", "id of a camera"}},
    {"unknown fault",
     R"({"faults": [{"do": "explode"}]})",
     {"scene.faults[0].do", "explode", "unplug"}},
    {"fault without a time",
     R"({"cameras": [{"id": "a", "resolutions": [{"width": 64, "height": 64}]}],
         "faults": [{"do": "unplug", "camera": "a"}]})",
     {"scene.faults[0].do", "afterFrames", "atMs"}},
    {"failing call without a result",
     R"({"faults": [{"do": "fail", "function": "Toupcam_Open"}]})",
     {"scene.faults[0].result", "nothing"}},
    {"reported size without a function",
     R"({"faults": [{"do": "reportSize", "width": 4, "height": 4}]})",
     {"scene.faults[0].function", "nothing"}},
    {"option without an answer",
     R"({"faults": [{"do": "answer", "option": 24}]})",
     {"scene.faults[0].value", "nothing"}},
    {"probability above one",
     R"({"cameras": [{"id": "a", "resolutions": [{"width": 64, "height": 64}]}],
         "faults": [{"do": "lose", "camera": "a", "probability": 1.5}]})",
     {"scene.faults[0].probability", "1.5", "from 0 to 1"}},
    {"dropped trigger frame number 0",
     R"({"cameras": [{"id": "a", "resolutions": [{"width": 64, "height": 64}]}],
         "faults": [{"do": "dropTrigger", "camera": "a", "nth": 0}]})",
     {"scene.faults[0].nth", "0 found", "from 1"}},
    {"trigger source without a period",
     R"({"cameras": [{"id": "a", "resolutions": [{"width": 64, "height": 64}],
                      "externalTrigger": {"periodMs": 0}}]})",
     {"scene.cameras[0].externalTrigger.periodMs", "0 found", "0.1"}},
    {"lamp that is too cold",
     R"({"cameras": [{"id": "a", "resolutions": [{"width": 64, "height": 64}],
                      "source": {"kind": "flat", "lightKelvin": 1999}}]})",
     {"scene.cameras[0].source.lightKelvin", "1999", "from 2000 to 15000"}},
    {"mains of 55 Hz",
     R"({"cameras": [{"id": "a", "resolutions": [{"width": 64, "height": 64}],
                      "source": {"kind": "flat", "mainsHz": 55}}]})",
     {"scene.cameras[0].source.mainsHz", "55", "50, 60 or 0"}},
    {"fault in an unknown function",
     R"({"faults": [{"do": "delay", "function": "Toupcam_put_Contrats", "ms": 5}]})",
     {"scene.faults[0].function", "Toupcam_put_Contrats", "function of the SDK"}},
    {"fault in a function of another library",
     R"({"faults": [{"do": "fail", "function": "malloc", "result": 0}]})",
     {"scene.faults[0].function", "malloc", "function of the SDK"}},
    {"reported size of a function that copies no picture",
     R"({"faults": [{"do": "reportSize", "function": "Toupcam_Open", "width": 4, "height": 4}]})",
     {"scene.faults[0].function", "Toupcam_Open", "Toupcam_PullImageV2"}},
    {"key that an object has twice",
     "{\"seed\": 1,\n\"cameras\": [],\n\"s\\u0065ed\": 2}",
     {"line 3", "the key \"seed\" found twice"}},
    {"key that an object in another has twice",
     R"({"cameras": [{"id": "a:", "resolutions": [{"width": 64, "height": 64, "width": 32}]}]})",
     {"line 1", "the key \"width\" found twice"}},
    {"unknown key that controls a terminal", R"({"\u001b[2J": 1})", {"\"\\u001b[2J\""}},
    {"picture whose name controls a terminal",
     R"({"cameras": [{"id": "a", "resolutions": [{"width": 64, "height": 64}],
                      "source": {"kind": "picture", "path": "/\u001b[2J.png"}}]})",
     {"scene.cameras[0].source.path", "\"/\\u001b[2J.png\" found"}},
    {"picture without a name",
     R"({"cameras": [{"id": "a", "resolutions": [{"width": 64, "height": 64}],
                      "source": {"kind": "picture", "path": ""}}]})",
     {"scene.cameras[0].source.path", "\"\" found", "picture file"}},
    {"ring that no memory holds",
     R"({"cameras": [{"id": "a", "resolutions": [{"width": 64, "height": 64},
                                                 {"width": 16384, "height": 16384}],
                      "source": {"kind": "ring", "frames": 64}}]})",
     {"scene.cameras[0].source.frames", "64 frames of 805306368 bytes", "at most 1073741824"}},
    {"lamp of exact patches",
     R"({"cameras": [{"id": "a", "resolutions": [{"width": 64, "height": 64}],
                      "source": {"kind": "patches", "lightKelvin": 3200}}]})",
     {"scene.cameras[0].source", "\"lightKelvin\"", "kind"}},
};

class SimWrongScene : public SimTest, public WithSimRow<WrongRow> {};

ROWS_IN(rows, SimWrongScene, wrong);

ROW_TEST(SimWrongScene, is_refused_with_place_value_and_expectation_and_changes_nothing) {
    const char* const complaint = ToupcamSim_loadScene(GetParam().scene);
    ASSERT_NE(complaint, nullptr);
    for (const char* text : GetParam().named)
        EXPECT_NE(std::string(complaint).find(text), std::string::npos)
            << "\"" << text << "\" is not in \"" << complaint << "\"";
    ToupcamDeviceV2 records[TOUPCAM_MAX];
    EXPECT_EQ(Toupcam_EnumV2(records), 2U);
}

class SimScene : public SimTest {};

TEST_F(SimScene, null_text_is_refused) {
    EXPECT_NE(ToupcamSim_loadScene(nullptr), nullptr);
}

TEST_F(SimScene, flags_can_be_a_hexadecimal_number) {
    SimCameraText camera;
    camera.extra = R"(, "flags": "0x4000000040")";
    load(makeScene({camera}));
    ToupcamDeviceV2 records[TOUPCAM_MAX];
    ASSERT_EQ(Toupcam_EnumV2(records), 1U);
    EXPECT_EQ(records[0].model->flag, TOUPCAM_FLAG_BANDWIDTH | TOUPCAM_FLAG_USB30);
}

TEST_F(SimScene, camera_record_carries_what_the_scene_says) {
    SimCameraText camera;
    camera.extra = R"(, "model": "Simulated-X", "displayName": "Simulated X µ", "fanLevels": 4,
                       "speedLevels": 3, "pixelSizeUm": 1.5)";
    load(makeScene({camera}));
    ToupcamDeviceV2 records[TOUPCAM_MAX];
    ASSERT_EQ(Toupcam_EnumV2(records), 1U);
    EXPECT_STREQ(records[0].displayname, "Simulated X µ");
    EXPECT_STREQ(records[0].id, "cam");
    const ToupcamModelV2& model = *records[0].model;
    EXPECT_STREQ(model.name, "Simulated-X");
    EXPECT_EQ(model.maxfanspeed, 4U);
    EXPECT_EQ(model.maxspeed, 2U);
    EXPECT_EQ(model.still, 2U);
    EXPECT_FLOAT_EQ(model.xpixsz, 1.5F);
    EXPECT_EQ(model.res[1].width, 48U);
}

TEST_F(SimScene, reset_brings_the_built_in_scene_back) {
    load(R"({"cameras": []})");
    ToupcamSim_reset();
    ToupcamDeviceV2 records[TOUPCAM_MAX];
    EXPECT_EQ(Toupcam_EnumV2(records), 2U);
}

/// A file that is removed with the test.
class TemporaryFile {
public:
    TemporaryFile(const std::string& name, const std::string& text)
        : m_path(::testing::TempDir() + "/toupcamsim-" + name) {
        std::ofstream(m_path) << text;
    }
    ~TemporaryFile() { std::filesystem::remove(m_path); }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const std::string& path() const { return m_path; }

private:
    std::string m_path;
};

/// What is wrong with a file as a scene; empty if nothing is.
std::string loadFile(const std::string& path) {
    const char* const complaint = ToupcamSim_loadSceneFile(path.c_str());
    return complaint == nullptr ? std::string() : complaint;
}

TEST_F(SimScene, keys_of_different_objects_may_be_the_same) {
    load(R"({"cameras": [
        {"id": "a", "serial": "id", "resolutions": [{"width": 64, "height": 64}]},
        {"id": "b", "serial": "{\"id\":", "resolutions": [{"width": 64, "height": 64}]}]})");
    ToupcamDeviceV2 records[TOUPCAM_MAX];
    EXPECT_EQ(Toupcam_EnumV2(records), 2U);
}

TEST_F(SimScene, a_file_is_loaded_and_the_pictures_it_names_are_sought_beside_it) {
    SimCameraText camera;
    camera.source = R"({"kind": "picture", "path": "toupcamsim-picture.ppm"})";
    const TemporaryFile scene("scene.json", makeScene({camera}));
    EXPECT_THAT(loadFile(scene.path()), ::testing::HasSubstr("toupcamsim-picture.ppm"));
    const TemporaryFile picture("picture.ppm", "P3 1 1 255 9 9 9");
    EXPECT_EQ(loadFile(scene.path()), "");
    ToupcamDeviceV2 records[TOUPCAM_MAX];
    EXPECT_EQ(Toupcam_EnumV2(records), 1U);
}

TEST_F(SimScene, what_is_not_a_file_is_not_read) {
    const std::string pipe = ::testing::TempDir() + "/toupcamsim-pipe";
    std::filesystem::remove(pipe);
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    for (const std::string& path : {pipe, std::string("/dev/zero"), ::testing::TempDir()})
        EXPECT_EQ(loadFile(path),
                  "cannot be read: it is not a file, expected one with a scene in JSON");
    std::filesystem::remove(pipe);
}

TEST_F(SimScene, a_file_without_an_end_in_sight_is_refused) {
    const TemporaryFile file("endless.json", "");
    std::filesystem::resize_file(file.path(), std::uintmax_t{1} << 40); // a hole, not data
    EXPECT_EQ(loadFile(file.path()),
              "cannot be read: it is too large, expected at most 16777216 bytes");
}

TEST_F(SimScene, a_picture_that_is_a_pipe_is_not_read) {
    const std::string pipe = ::testing::TempDir() + "/toupcamsim-picture-pipe";
    std::filesystem::remove(pipe);
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    SimCameraText camera;
    camera.source = R"({"kind": "picture", "path": ")" + pipe + R"("})";
    const char* const complaint = ToupcamSim_loadScene(makeScene({camera}).c_str());
    std::filesystem::remove(pipe);
    ASSERT_NE(complaint, nullptr);
    EXPECT_THAT(complaint, ::testing::HasSubstr("expected a picture file"));
}

// The environment is read at first use, so each of these tests runs in its own process.
class SimEnvironment : public ::testing::Test {
protected:
    SimEnvironment() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

    [[noreturn]] static void enumerateWith(const std::string& sceneFile) {
        setenv("TOUPCAM_SIM_SCENE", sceneFile.c_str(), 1);
        ToupcamDeviceV2 records[TOUPCAM_MAX];
        std::exit(int(Toupcam_EnumV2(records)));
    }
};

TEST_F(SimEnvironment, scene_file_is_loaded_at_first_use) {
    const TemporaryFile file("scene.json", makeScene({SimCameraText()}));
    EXPECT_EXIT(enumerateWith(file.path()), ::testing::ExitedWithCode(1), "");
}

TEST_F(SimEnvironment, broken_scene_file_is_named_and_leaves_no_cameras) {
    const TemporaryFile file("broken.json", R"({"cameras": [{"id": 5}]})");
    EXPECT_EXIT(enumerateWith(file.path()), ::testing::ExitedWithCode(0),
                "broken.json.*scene.cameras.0..id: 5 found, expected a string");
}

TEST_F(SimEnvironment, missing_scene_file_is_named_and_leaves_no_cameras) {
    EXPECT_EXIT(enumerateWith("no-such-scene.json"), ::testing::ExitedWithCode(0),
                "no-such-scene.json.*cannot be read");
}

TEST_F(SimEnvironment, journal_is_appended_to_its_file) {
    const TemporaryFile file("journal.txt", "before\n");
    EXPECT_EXIT(
        {
            setenv("TOUPCAM_SIM_JOURNAL", file.path().c_str(), 1);
            Toupcam_Open("no-such-camera");
            std::exit(3);
        },
        ::testing::ExitedWithCode(3), "");
    std::ifstream lines(file.path());
    std::string first;
    std::string second;
    std::getline(lines, first);
    std::getline(lines, second);
    EXPECT_EQ(first, "before");
    EXPECT_EQ(second, "Toupcam_Open(\"no-such-camera\") = h0");
}

} // namespace
