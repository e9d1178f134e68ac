// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <QList>
#include <QString>
#include <QStringList>

class PDeviceRegister;

/// Finds and loads device plugins. One thread, that of the registers.
class PCD_EXPORT PPluginLoader {
public:
    /// A file or folder from which no plugin was loaded, and why.
    struct Failure {
        QString path;
        QString reason;
    };

    /// Folders (or single plugin files) to search, in this order: those added here, those of the
    /// environment variable PCD_PLUGIN_PATH (colon-separated), then "plugins" in homeFolder().
    void addSearchPath(const QString& path);
    QStringList searchPaths() const;

    /// The folder "pcd" beside this library, wherever it was built or installed: with "plugins" and
    /// "sim", the simulated SDK. Any thread.
    static QString homeFolder();

    /// Loads the plugins found and returns their root objects, which the caller owns. The metadata
    /// is read first: a library that is not a device plugin, or has the class name of one loaded
    /// before, is not loaded.
    QList<PDeviceRegister*> load();

    /// The failures of load(): given paths that do not exist, and plugins that cannot be loaded.
    const QList<Failure>& failures() const { return m_failures; }
    /// The files of the plugins that load() has returned, in the same order.
    const QStringList& loadedFiles() const { return m_loadedFiles; }

private:
    QStringList pluginFiles();
    QStringList filesAt(const QString& path, bool required);
    PDeviceRegister* loadFile(const QString& path);
    PDeviceRegister* fail(const QString& path, const QString& reason);

    QStringList m_added;
    QStringList m_loadedClasses;
    QStringList m_loadedFiles;
    QList<Failure> m_failures;
};
