// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>
#include <PCore/PStatus.h>

#include <QString>

class QPluginLoader;

/// What the file of a plugin says about itself, read without loading it. A value type; any thread.
struct PCD_TEST_EXPORT PPluginMetadata {
    QString className; ///< of the root object

    /// Reads the metadata in a loader's file. Fails, with the reason, if the file is not a plugin
    /// or not one for devices.
    static PStatus read(const QPluginLoader& loader, PPluginMetadata& metadata);
};
