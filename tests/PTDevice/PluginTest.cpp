// SPDX-License-Identifier: MIT
// The built libPTDevice.so as a host loads it: its metadata, its root object, its resource.
#include <PCd/device/PDeviceRegister.h>

#include <toupcam/sim/api/toupcamsim.h>

#include <QFile>
#include <QJsonObject>
#include <QPluginLoader>
#include <QPointer>
#include <QTranslator>

#include <gtest/gtest.h>

#include <dlfcn.h>

namespace {

const QString pluginPath = QStringLiteral(PT_PLUGIN_PATH);

class Plugin : public testing::Test {
protected:
    Plugin() {
        // The plugin finds the SDK that this test is linked with, so both use the same simulated
        // cameras.
        Dl_info info{};
        EXPECT_NE(dladdr(reinterpret_cast<const void*>(&ToupcamSim_version), &info), 0);
        qputenv("TOUPCAM_LIBRARY", info.dli_fname);
    }
    ~Plugin() override { ToupcamSim_reset(); }

    QPluginLoader loader{pluginPath};
};

} // namespace

TEST_F(Plugin, metadata_names_the_interface_and_the_class_and_no_more) {
    const QJsonObject metadata = loader.metaData();
    EXPECT_EQ(metadata.value(u"IID"_qs).toString(), u"pellix.devices.ptregister"_qs);
    EXPECT_EQ(metadata.value(u"className"_qs).toString(), u"PTDeviceRegister"_qs);
    EXPECT_TRUE(metadata.value(u"MetaData"_qs).toObject().isEmpty());
    EXPECT_FALSE(loader.isLoaded()) << "reading the metadata loads nothing";
}

TEST_F(Plugin, the_metadata_header_has_format_version_1_and_exactly_1_as_its_architecture_byte) {
    QFile file(pluginPath);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    // Qt's note in the library: after its name, which has 12 bytes, there are the format version,
    // Qt's major and minor version, and the architecture.
    const qsizetype note = bytes.indexOf(QByteArray("qt-project!\0", 12));
    ASSERT_GE(note, 0);
    EXPECT_EQ(bytes.at(note + 12), 1);
    EXPECT_EQ(bytes.at(note + 13), QT_VERSION_MAJOR);
    EXPECT_EQ(bytes.at(note + 14), QT_VERSION_MINOR);
    EXPECT_EQ(bytes.at(note + 15), 1);
}

TEST_F(Plugin, the_root_object_is_one_register_and_made_again_once_it_is_destroyed) {
    QPointer<QObject> root = loader.instance();
    ASSERT_FALSE(root.isNull()) << qPrintable(loader.errorString());
    EXPECT_STREQ(root->metaObject()->className(), "PTDeviceRegister");
    EXPECT_EQ(QPluginLoader(pluginPath).instance(), root);
    EXPECT_NE(root->qt_metacast("PTDeviceRegister"), nullptr);
    EXPECT_NE(root->qt_metacast(PDeviceRegister_iid), nullptr);
    EXPECT_EQ(root->qt_metacast("org.nobody.register/1.0"), nullptr);
    auto* const reg = qobject_cast<PDeviceRegister*>(root.data());
    ASSERT_NE(reg, nullptr);
    reg->updateDevices();
    EXPECT_EQ(reg->devices().size(), 2) << "the two cameras of the built-in scene";
    delete root;
    root = loader.instance();
    ASSERT_FALSE(root.isNull());
    auto* const made = qobject_cast<PDeviceRegister*>(root.data());
    ASSERT_NE(made, nullptr);
    EXPECT_TRUE(made->devices().isEmpty());
    delete root;
}

TEST_F(Plugin, the_translation_catalogue_is_in_the_resource_and_in_russian) {
    ASSERT_TRUE(loader.load()) << qPrintable(loader.errorString());
    QTranslator translator;
    ASSERT_TRUE(translator.load(u":/ptdevice_96.qm"_qs));
    EXPECT_EQ(translator.language(), u"ru_RU"_qs);
    EXPECT_EQ(translator.translate("PTDevice", "White balance"), u"Баланс белого"_qs);
}

TEST_F(Plugin, what_a_host_needs_for_pull_mode_is_exported) {
    ASSERT_TRUE(loader.load()) << qPrintable(loader.errorString());
    void* const library = dlopen(PT_PLUGIN_PATH, RTLD_NOW | RTLD_NOLOAD);
    ASSERT_NE(library, nullptr);
    for (const char* symbol :
         {"_Z7cbEventjPv", "_Z10cbExposurePv", "_Z6cbDataPKvPK16BITMAPINFOHEADERiPv",
          "_ZN8PTDevice13postprocImageERK6PImage", "_ZN8PTDevice11postprocEvtEj",
          "_Z23qInitResources_ptdevicev"})
        EXPECT_NE(dlsym(library, symbol), nullptr) << symbol;
    EXPECT_EQ(dlsym(library, "Toupcam_no_such_function"), nullptr);
    dlclose(library);
}
