// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/doctor/PFinding.h>

#include <PCd/plugin/PPluginLoader.h>

/// Examines the plugins that were found: which were loaded, which refused and why, and whether they
/// were built for this Qt. The main thread.
class PPluginExamination {
public:
    /// The files of the loaded plugins, and the failures of the others.
    PPluginExamination(QStringList loadedFiles, QList<PPluginLoader::Failure> failures);

    /// Qt, then one finding for each plugin; an error if none was loaded.
    QList<PFinding> run() const;

private:
    PFinding examineRefused(const PPluginLoader::Failure& failure) const;

    const QStringList m_loadedFiles;
    const QList<PPluginLoader::Failure> m_failures;
};
