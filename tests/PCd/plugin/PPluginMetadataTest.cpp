// SPDX-License-Identifier: MIT
#include <PCd/plugin/PPluginMetadata.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>

#include <QCoreApplication>
#include <QPluginLoader>

namespace {

/// The file of a plugin that was built for the tests of the loader.
QString pluginFile(const QString& name) {
    return QCoreApplication::applicationDirPath() +
           u"/../lib/test-plugins/%1/lib%1.so"_qs.arg(name);
}

class PPluginMetadataTest : public FolderTest {
protected:
    PStatus read(const QString& file) {
        const QPluginLoader loader(file);
        const bool wasLoaded = loader.isLoaded(); // by another test
        const PStatus status = PPluginMetadata::read(loader, metadata);
        EXPECT_EQ(loader.isLoaded(), wasLoaded);
        return status;
    }
    PPluginMetadata metadata{u"before"_qs};
};

TEST_F(PPluginMetadataTest, a_plugin_for_devices_names_the_class_of_its_register) {
    const PStatus status = read(pluginFile(u"device"_qs));
    ASSERT_TRUE(status.isOk()) << status.reason().toStdString();
    EXPECT_EQ(metadata.className, u"TestRegister"_qs);
}

TEST_F(PPluginMetadataTest, a_plugin_for_something_else_is_refused_with_its_interface) {
    const PStatus status = read(pluginFile(u"foreign"_qs));
    EXPECT_FALSE(status.isOk());
    EXPECT_TRUE(status.reason().contains(u"expected one that begins with \"pellix.devices.\""))
        << status.reason().toStdString();
    EXPECT_EQ(metadata.className, u"before"_qs);
}

TEST_F(PPluginMetadataTest, a_file_that_is_no_plugin_is_refused_with_the_reason) {
    writeFile(path(u"a.so"_qs), "not a library");
    const PStatus status = read(path(u"a.so"_qs));
    EXPECT_FALSE(status.isOk());
    EXPECT_NE(status.reason(), QString());
}

} // namespace
