// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdview/capture/PNamePattern.h>

#include <QDateTime>
#include <QString>

/// The folder and names of pictures and recordings, stored between runs of the program. The GUI
/// thread.
class PCaptureFolder {
public:
    /// The folder; by default "pcdview" in the user's pictures folder.
    static QString path();
    static void setPath(const QString& folder);
    static PNamePattern pattern();
    static void setPattern(const PNamePattern& pattern);
    /// The extension of stills: ".png" or ".tif".
    static QString stillEnding();
    static void setStillEnding(const QString& ending);

    /// A path in the folder that does not exist yet and was not returned before by this process,
    /// because a picture may still be waiting to be written there. The name follows the pattern and
    /// has this ending (".png").
    static QString newPath(const QString& camera, const QDateTime& time, const QString& ending);
    /// The path that newPath() would return.
    static QString nextPath(const QString& camera, const QDateTime& time, const QString& ending);
};
