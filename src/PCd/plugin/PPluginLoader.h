// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

class PDeviceRegister;

/// Finds and loads device plugins. One thread, that of the registers.
class PPluginLoader {
public:
    /// A file or folder that did not give a device register, and why.
    struct Failure {
        QString path;
        QString reason;
    };

    /// Folders (or single plugin files) to look in, in this order: those added here, those of the
    /// environment variable PCD_PLUGIN_PATH (colon-separated), then "pcd/plugins" beside this
    /// library.
    void addSearchPath(const QString& path);
    QStringList searchPaths() const;

    /// Loads what it finds and returns the root objects, which the caller owns. A plugin's metadata
    /// is read before the plugin is loaded: what is not a device plugin, or has the class name of
    /// one loaded before, is not loaded at all.
    QList<PDeviceRegister*> load();

    /// What went wrong in load(): paths that were given and do not exist, plugins that cannot
    /// be loaded.
    const QList<Failure>& failures() const { return m_failures; }

private:
    QStringList pluginFiles();
    QStringList filesAt(const QString& path, bool required);
    PDeviceRegister* loadFile(const QString& path);
    PDeviceRegister* fail(const QString& path, const QString& reason);

    QStringList m_added;
    QStringList m_loadedClasses;
    QList<Failure> m_failures;
};
