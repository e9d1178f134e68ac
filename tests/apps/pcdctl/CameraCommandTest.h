// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/CtlProcess.h>
#include <apps/pcdctl/CtlScene.h>

#include <support/FolderTest.h>

/// Runs commands on the one camera of a scene, and examines the calls that reach the camera.
class CameraCommandTest : public FolderTest {
protected:
    CtlScene scene = CtlScene().addCamera().set(u"speedLevels"_qs, 4);

    /// Runs a command with a journal of its own.
    CtlResult run(const QStringList& arguments) const;

    /// The calls of the last run that changed something in the camera after it was opened:
    /// settings, streams, pictures. Without results: "Toupcam_put_Contrast(h1, 12)".
    QStringList calls() const;
};

/// The ids in an array of objects [{id: …}] or of texts.
QStringList idsIn(const QJsonValue& array);
