// SPDX-License-Identifier: MIT
#include <apps/common/camera/PSceneFile.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>

#include <QJsonDocument>

namespace {

class SceneFile : public FolderTest {
protected:
    PSceneFile read(const QByteArray& text) const {
        writeFile(path(u"scene.json"_qs), text);
        return PSceneFile(path(u"scene.json"_qs));
    }
};

TEST_F(SceneFile, relative_picture_paths_are_relative_to_the_folder_of_the_scene) {
    const PSceneFile scene = read(R"({"seed": 4, "cameras": [
        {"id": "a", "source": {"kind": "picture", "path": "slides/one.png"}},
        {"id": "b", "source": {"kind": "picture", "path": "/abs/two.png"}},
        {"id": "c"}]})");
    ASSERT_TRUE(scene.status().isOk());
    const QByteArray expected =
        R"({"seed": 4, "cameras": [
        {"id": "a", "source": {"kind": "picture", "path": ")" +
        path(u"slides/one.png"_qs).toUtf8() + R"("}},
        {"id": "b", "source": {"kind": "picture", "path": "/abs/two.png"}},
        {"id": "c"}]})";
    EXPECT_EQ(QJsonDocument::fromJson(scene.text()), QJsonDocument::fromJson(expected))
        << scene.text().toStdString();
}

TEST_F(SceneFile, what_is_not_a_scene_is_passed_on_as_it_is) {
    for (const char* text : {"{\"cameras\": [", "[1, 2]", "{\"cameras\": 3}", ""}) {
        const PSceneFile scene = read(text);
        EXPECT_TRUE(scene.status().isOk());
        EXPECT_EQ(scene.text(), QByteArray(text));
    }
}

TEST_F(SceneFile, a_file_that_is_not_there_is_named) {
    const PSceneFile scene(path(u"none.json"_qs));
    EXPECT_FALSE(scene.status().isOk());
    EXPECT_TRUE(scene.status().reason().contains(path(u"none.json"_qs)));
}

} // namespace
