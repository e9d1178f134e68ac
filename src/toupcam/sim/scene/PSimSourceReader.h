// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/scene/PSimScene.h>

#include <QJsonValue>

/// Reads the image source of a scene's camera. Callable from any thread.
class PSimSourceReader {
public:
    /// Relative picture paths refer to `folder`. Throws PSimSceneError.
    static PSimSourceSpec read(const QJsonValue& value, const QString& place,
                               const QString& folder);

    /// Throws PSimSceneError if the ready-made frames of a camera's ring need too much memory.
    static void checkMemory(const PSimCameraSpec& camera, const QString& place);
};
