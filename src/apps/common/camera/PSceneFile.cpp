// SPDX-License-Identifier: MIT
#include <apps/common/camera/PSceneFile.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

QJsonValue withAbsolutePath(const QJsonValue& camera, const QDir& folder) {
    QJsonObject changed = camera.toObject();
    QJsonObject source = changed.value(u"source"_qs).toObject();
    const QJsonValue path = source.value(u"path"_qs);
    if (!path.isString())
        return camera;
    source.insert(u"path"_qs, folder.absoluteFilePath(path.toString()));
    changed.insert(u"source"_qs, source);
    return changed;
}

/// The scene with absolute picture paths; the text unchanged if it has no cameras.
QByteArray withAbsolutePaths(const QByteArray& text, const QDir& folder) {
    QJsonObject scene = QJsonDocument::fromJson(text).object();
    const QJsonValue cameras = scene.value(u"cameras"_qs);
    if (!cameras.isArray())
        return text;
    QJsonArray changed;
    for (const auto& camera : cameras.toArray())
        changed.append(withAbsolutePath(camera, folder));
    scene.insert(u"cameras"_qs, changed);
    return QJsonDocument(scene).toJson();
}

} // namespace

PSceneFile::PSceneFile(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        m_status =
            PStatus::failure(u"cannot read the scene \"%1\": %2"_qs.arg(path, file.errorString()));
        return;
    }
    m_text = withAbsolutePaths(file.readAll(), QFileInfo(path).absoluteDir());
}
