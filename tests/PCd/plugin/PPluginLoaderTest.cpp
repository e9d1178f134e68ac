// SPDX-License-Identifier: MIT
#include <PCd/plugin/PPluginLoader.h>

#include <PCd/device/PDeviceRegister.h>

#include <support/QtPrinters.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <dlfcn.h>

#include <memory>
#include <vector>

namespace {

const QString pathVariable = u"PCD_PLUGIN_PATH"_qs;

/// The folder of a plugin that was built for these tests.
QString pluginFolder(const char* name) {
    const QDir programs(QCoreApplication::applicationDirPath());
    return QDir::cleanPath(programs.filePath(u"../lib/test-plugins/"_qs) +
                           QString::fromLatin1(name));
}

QString pluginFile(const char* name) {
    return pluginFolder(name) + u"/lib"_qs + QString::fromLatin1(name) + u".so"_qs;
}

bool isLoaded(const QString& library) {
    void* const handle = dlopen(QFile::encodeName(library).constData(), RTLD_LAZY | RTLD_NOLOAD);
    if (handle != nullptr)
        dlclose(handle);
    return handle != nullptr;
}

/// A loader, the root objects it found, and environment variables that are restored afterwards. The
/// real plugins beside the library are loaded too, and ignored.
class PPluginLoaderTest : public testing::Test {
protected:
    PPluginLoaderTest() { qunsetenv(pathVariable.toLatin1().constData()); }
    ~PPluginLoaderTest() override { qunsetenv(pathVariable.toLatin1().constData()); }

    static void setPathVariable(const QString& value) {
        qputenv(pathVariable.toLatin1().constData(), QFile::encodeName(value));
    }

    void load() {
        for (PDeviceRegister* root : loader.load())
            roots.emplace_back(root);
    }
    std::size_t countRegisters(const char* className) const {
        return std::size_t(std::count_if(roots.begin(), roots.end(), [&](const auto& root) {
            return QByteArray(root->metaObject()->className()) == className;
        }));
    }
    /// The failure for this path; empty if there is none.
    QString reasonFor(const QString& path) const {
        for (const PPluginLoader::Failure& failure : loader.failures()) {
            if (failure.path == path)
                return failure.reason;
        }
        return QString();
    }

    PPluginLoader loader;
    std::vector<std::unique_ptr<PDeviceRegister>> roots;
};

} // namespace

TEST_F(PPluginLoaderTest, loads_a_device_plugin_from_a_folder) {
    loader.addSearchPath(pluginFolder("device"));
    load();
    ASSERT_EQ(countRegisters("TestRegister"), 1u);
    EXPECT_EQ(reasonFor(pluginFile("device")), QString());
}

TEST_F(PPluginLoaderTest, loads_a_device_plugin_from_its_file) {
    loader.addSearchPath(pluginFile("device"));
    load();
    ASSERT_EQ(countRegisters("TestRegister"), 1u);
}

TEST_F(PPluginLoaderTest, loads_plugins_of_different_makers) {
    loader.addSearchPath(pluginFolder("device"));
    loader.addSearchPath(pluginFolder("otherdevice"));
    load();
    EXPECT_EQ(countRegisters("TestRegister"), 1u);
    EXPECT_EQ(countRegisters("OtherRegister"), 1u);
}

TEST_F(PPluginLoaderTest, lists_the_files_of_the_loaded_plugins_only) {
    loader.addSearchPath(pluginFile("noregister"));
    loader.addSearchPath(pluginFile("device"));
    load();
    EXPECT_EQ(loader.loadedFiles().size(), qsizetype(roots.size()));
    EXPECT_TRUE(loader.loadedFiles().contains(QFileInfo(pluginFile("device")).canonicalFilePath()));
    EXPECT_FALSE(loader.loadedFiles().contains(pluginFile("noregister")));
}

TEST_F(PPluginLoaderTest, gives_a_root_that_is_a_device_register) {
    loader.addSearchPath(pluginFile("device"));
    const QList<PDeviceRegister*> found = loader.load();
    ASSERT_FALSE(found.isEmpty());
    EXPECT_EQ(found.first()->id(), "testregister");
    qDeleteAll(found);
}

TEST_F(PPluginLoaderTest, can_be_used_again_after_its_roots_were_deleted) {
    loader.addSearchPath(pluginFile("device"));
    load();
    roots.clear();
    PPluginLoader next;
    next.addSearchPath(pluginFile("device"));
    for (PDeviceRegister* root : next.load())
        roots.emplace_back(root);
    EXPECT_EQ(countRegisters("TestRegister"), 1u);
}

TEST_F(PPluginLoaderTest, reads_the_folders_of_the_environment_variable) {
    setPathVariable(pluginFolder("noregister") + u':' + pluginFolder("device"));
    load();
    EXPECT_EQ(countRegisters("TestRegister"), 1u);
    EXPECT_NE(reasonFor(pluginFile("noregister")), QString());
}

TEST_F(PPluginLoaderTest, looks_in_added_folders_then_the_variable_then_beside_the_library) {
    setPathVariable(u"/first:/second::"_qs);
    loader.addSearchPath(u"/added"_qs);
    const QStringList paths = loader.searchPaths();
    ASSERT_EQ(paths.size(), 4);
    EXPECT_EQ(paths.at(0), u"/added"_qs);
    EXPECT_EQ(paths.at(1), u"/first"_qs);
    EXPECT_EQ(paths.at(2), u"/second"_qs);
    EXPECT_TRUE(paths.at(3).endsWith(u"/lib/pcd/plugins"_qs)) << paths.at(3).toStdString();
}

TEST_F(PPluginLoaderTest, loads_a_class_once_however_many_files_have_it) {
    loader.addSearchPath(pluginFolder("device"));
    loader.addSearchPath(pluginFolder("devicecopy"));
    load();
    EXPECT_EQ(countRegisters("TestRegister"), 1u);
    EXPECT_FALSE(isLoaded(pluginFile("devicecopy")));
    EXPECT_EQ(reasonFor(pluginFile("devicecopy")), QString()); // it is not a failure
}

TEST_F(PPluginLoaderTest, gives_a_register_to_one_owner_only) {
    loader.addSearchPath(pluginFile("device"));
    load();
    ASSERT_EQ(countRegisters("TestRegister"), 1u);
    PPluginLoader second;
    second.addSearchPath(pluginFile("device"));
    for (PDeviceRegister* root : second.load())
        EXPECT_STRNE(root->metaObject()->className(), "TestRegister");
    ASSERT_FALSE(second.failures().isEmpty());
    EXPECT_EQ(second.failures().first().reason,
              u"it has been loaded already, and its register is in use"_qs);
}

TEST_F(PPluginLoaderTest, loads_a_file_once_however_often_it_is_named) {
    loader.addSearchPath(pluginFolder("device"));
    loader.addSearchPath(pluginFile("device"));
    setPathVariable(pluginFolder("device") + u"/../device"_qs);
    load();
    EXPECT_EQ(countRegisters("TestRegister"), 1u);
}

TEST_F(PPluginLoaderTest, names_a_path_that_is_not_there) {
    setPathVariable(u"/no/such/folder"_qs);
    loader.addSearchPath(u"/no/such/plugin.so"_qs);
    load();
    EXPECT_EQ(reasonFor(u"/no/such/plugin.so"_qs), u"no such file or folder"_qs);
    EXPECT_EQ(reasonFor(u"/no/such/folder"_qs), u"no such file or folder"_qs);
}

TEST_F(PPluginLoaderTest, names_a_text_file_that_is_called_like_a_library) {
    const QTemporaryDir folder;
    const QString path = QDir(QDir(folder.path()).canonicalPath()).filePath(u"a.so"_qs);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("this is not a library\n");
    file.close();
    loader.addSearchPath(folder.path());
    load();
    EXPECT_TRUE(reasonFor(path).contains(path)) << reasonFor(path).toStdString();
}

TEST_F(PPluginLoaderTest, ignores_files_of_another_kind) {
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"README.txt"_qs));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    loader.addSearchPath(folder.path());
    load();
    for (const PPluginLoader::Failure& failure : loader.failures())
        EXPECT_FALSE(failure.path.contains(folder.path())) << failure.path.toStdString();
}

TEST_F(PPluginLoaderTest, names_a_plugin_for_something_else_and_does_not_load_it) {
    loader.addSearchPath(pluginFolder("foreign"));
    load();
    EXPECT_EQ(reasonFor(pluginFile("foreign")),
              u"its interface is \"org.example.imageformat\", expected one that "
              "begins with \"pellix.devices.\""_qs);
    EXPECT_FALSE(qEnvironmentVariableIsSet("PCD_TEST_FOREIGN_PLUGIN"));
    EXPECT_FALSE(isLoaded(pluginFile("foreign")));
}

TEST_F(PPluginLoaderTest, would_notice_a_foreign_plugin_being_loaded) {
    // Loads a copy: a library with inline static variables is never unloaded.
    const QTemporaryDir folder;
    const QString copy = folder.filePath(u"copy.so"_qs);
    ASSERT_TRUE(QFile::copy(pluginFile("foreign"), copy));
    EXPECT_FALSE(isLoaded(copy));
    void* const handle = dlopen(QFile::encodeName(copy).constData(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(handle, nullptr) << dlerror();
    EXPECT_TRUE(qEnvironmentVariableIsSet("PCD_TEST_FOREIGN_PLUGIN"));
    EXPECT_TRUE(isLoaded(copy));
    dlclose(handle);
    qunsetenv("PCD_TEST_FOREIGN_PLUGIN");
}

TEST_F(PPluginLoaderTest, names_a_plugin_whose_root_is_not_a_register) {
    loader.addSearchPath(pluginFolder("noregister"));
    load();
    EXPECT_EQ(reasonFor(pluginFile("noregister")), u"its root object is not a device register"_qs);
}

TEST_F(PPluginLoaderTest, names_a_plugin_whose_library_cannot_be_loaded) {
    loader.addSearchPath(pluginFolder("incomplete"));
    load();
    EXPECT_TRUE(reasonFor(pluginFile("incomplete")).contains(u"pcdTestSymbolThatNobodyHas"_qs))
        << reasonFor(pluginFile("incomplete")).toStdString();
}

TEST_F(PPluginLoaderTest, goes_on_after_a_failure) {
    loader.addSearchPath(u"/no/such/folder"_qs);
    loader.addSearchPath(pluginFolder("incomplete"));
    loader.addSearchPath(pluginFolder("device"));
    load();
    EXPECT_EQ(countRegisters("TestRegister"), 1u);
}
