// SPDX-License-Identifier: MIT
#include <devices/CameraScene.h>

#include <QFile>
#include <QJsonDocument>

#include <stdexcept>

QString CameraScene::cameraId(int number) {
    return u"camera-%1"_qs.arg(number);
}

QJsonObject CameraScene::describe(int number) {
    const QJsonArray resolutions{
        QJsonObject{{u"width"_qs, 640}, {u"height"_qs, 480}, {u"fps"_qs, 30}},
        QJsonObject{{u"width"_qs, 320}, {u"height"_qs, 240}, {u"fps"_qs, 60}}};
    return {{u"id"_qs, cameraId(number)},
            {u"model"_qs, u"Simulated-Full"_qs},
            {u"serial"_qs, u"FULL%1"_qs.arg(number)},
            {u"flags"_qs, QJsonArray{u"USB30"_qs, u"TEC_ONOFF"_qs, u"FAN"_qs, u"BANDWIDTH"_qs,
                                     u"TRIGGER_SOFTWARE"_qs}},
            {u"fanLevels"_qs, 3},
            {u"speedLevels"_qs, 4},
            {u"resolutions"_qs, resolutions},
            {u"exposure"_qs, QJsonObject{{u"default"_qs, 5000}, {u"auto"_qs, false}}},
            {u"source"_qs, QJsonObject{{u"kind"_qs, u"ring"_qs}}}};
}

QString CameraScene::write(const QJsonArray& cameras) {
    const QByteArray text = QJsonDocument(QJsonObject{{u"cameras"_qs, cameras}}).toJson();
    QFile file(m_folder.filePath(u"scene.json"_qs));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        throw std::runtime_error("a scene cannot be written");
    return file.fileName();
}
