// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/scene/PSimScene.h>

/// Reads scenes from JSON texts. Callable from any thread.
class PSimSceneReader {
public:
    /// The scene in a text. Relative picture paths refer to `folder` (empty: the current folder).
    /// Throws PSimSceneError naming the place, the value and what was expected.
    static PSimScene read(const QByteArray& json, const QString& folder = QString());

    /// The same from a file; relative picture paths refer to its folder.
    static PSimScene readFile(const QString& path);

    /// The scene that is used until another is loaded.
    static PSimScene builtin();

    /// The text of the built-in scene.
    static const char* builtinText();
};
