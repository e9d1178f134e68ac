// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/scene/PSimScene.h>

/// Makes scenes out of JSON texts. Callable from any thread.
class PSimSceneReader {
public:
    /// The scene a text describes. Relative picture paths are meant from `folder` (empty: the
    /// current folder). Throws PSimSceneError naming the place, the value and what was expected.
    static PSimScene read(const QByteArray& json, const QString& folder = QString());

    /// The same from a file; pictures are meant from the file's folder.
    static PSimScene readFile(const QString& path);

    /// The scene that is used until another is loaded.
    static PSimScene builtin();

    /// The text of the built-in scene.
    static const char* builtinText();
};
