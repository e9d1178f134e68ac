// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QTemporaryDir>

/// A scene of simulated cameras, which have everything a camera can have, as a file in a temporary
/// folder. The main thread.
class CameraScene {
public:
    /// The SDK's id of a camera, numbered from 1, and its description in a scene.
    static QString cameraId(int number);
    static QJsonObject describe(int number);

    /// Writes a scene of these cameras. Returns its path; throws std::runtime_error if it cannot be
    /// written.
    QString write(const QJsonArray& cameras);

private:
    QTemporaryDir m_folder;
};
