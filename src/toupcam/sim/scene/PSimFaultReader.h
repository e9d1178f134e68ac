// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/scene/PSimScene.h>

#include <QJsonValue>

/// Reads the steps of a scene's fault plan. Callable from any thread.
class PSimFaultReader {
public:
    /// One step; it may only name cameras of `scene`. Throws PSimSceneError.
    static PSimFaultSpec read(const QJsonValue& value, const QString& place,
                              const PSimScene& scene);
};
