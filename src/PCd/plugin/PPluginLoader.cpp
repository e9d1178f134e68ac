// SPDX-License-Identifier: MIT
#include <PCd/plugin/PPluginLoader.h>

#include <PCd/device/PDeviceRegister.h>
#include <PCd/plugin/PPluginMetadata.h>

#include <QDir>
#include <QFileInfo>
#include <QPluginLoader>

#include <dlfcn.h>

namespace {

/// Dynamic property that marks a root object as owned.
constexpr char ownedProperty[] = "pcdOwned";

QStringList environmentPaths() {
    return qEnvironmentVariable("PCD_PLUGIN_PATH").split(u':', Qt::SkipEmptyParts);
}

/// Where the plugins are that come with the framework.
QString libraryFolder() {
    return QDir(PPluginLoader::homeFolder()).filePath(u"plugins"_qs);
}

} // namespace

void PPluginLoader::addSearchPath(const QString& path) {
    m_added.append(path);
}

QStringList PPluginLoader::searchPaths() const {
    return m_added + environmentPaths() + QStringList{libraryFolder()};
}

QString PPluginLoader::homeFolder() {
    Dl_info info{};
    const bool known =
        dladdr(reinterpret_cast<const void*>(&PPluginLoader::homeFolder), &info) != 0;
    const QString library = known ? QFile::decodeName(info.dli_fname) : QString();
    return QFileInfo(library).absoluteDir().filePath(u"pcd"_qs);
}

QList<PDeviceRegister*> PPluginLoader::load() {
    m_failures.clear();
    m_loadedClasses.clear();
    m_loadedFiles.clear();
    QList<PDeviceRegister*> registers;
    const QStringList files = pluginFiles();
    for (const QString& file : files) {
        if (PDeviceRegister* const root = loadFile(file))
            registers.append(root);
    }
    return registers;
}

QStringList PPluginLoader::pluginFiles() {
    QStringList files;
    const QStringList asked = m_added + environmentPaths();
    for (const QString& path : asked)
        files += filesAt(path, true);
    files += filesAt(libraryFolder(), false);
    files.removeDuplicates();
    return files;
}

QStringList PPluginLoader::filesAt(const QString& path, bool required) {
    const QFileInfo info(path);
    if (info.isFile())
        return {info.canonicalFilePath()};
    if (!info.isDir()) {
        if (required)
            fail(path, u"no such file or folder"_qs);
        return {};
    }
    QStringList files;
    const QDir folder(path, u"*.so"_qs, QDir::Name, QDir::Files);
    for (const QFileInfo& file : folder.entryInfoList())
        files.append(file.canonicalFilePath());
    return files;
}

PDeviceRegister* PPluginLoader::loadFile(const QString& path) {
    QPluginLoader loader(path);
    PPluginMetadata metadata;
    const PStatus status = PPluginMetadata::read(loader, metadata);
    if (!status.isOk())
        return fail(path, status.reason());
    if (m_loadedClasses.contains(metadata.className))
        return nullptr; // already loaded from an earlier search path
    QObject* const root = loader.instance();
    if (root == nullptr)
        return fail(path, loader.errorString());
    auto* const deviceRegister = qobject_cast<PDeviceRegister*>(root);
    if (deviceRegister == nullptr)
        return fail(path, u"its root object is not a device register"_qs);
    // A plugin has one root object in a process, and that has one owner.
    if (root->property(ownedProperty).toBool())
        return fail(path, u"it has been loaded already, and its register is in use"_qs);
    root->setProperty(ownedProperty, true);
    m_loadedClasses.append(metadata.className);
    m_loadedFiles.append(path);
    return deviceRegister;
}

PDeviceRegister* PPluginLoader::fail(const QString& path, const QString& reason) {
    m_failures.append({path, reason});
    return nullptr;
}
