// SPDX-License-Identifier: MIT
#include <apps/pcdctl/CtlScene.h>

#include <support/FolderTest.h>

#include <QJsonDocument>

namespace {

const QString firstCamera = u"cam-1"_qs;

QJsonObject resolution(int width, int height, double fps) {
    return {{u"width"_qs, width}, {u"height"_qs, height}, {u"fps"_qs, fps}};
}

} // namespace

CtlScene& CtlScene::addCamera(const QString& id, const QString& serial) {
    m_cameras.append(QJsonObject{
        {u"id"_qs, id},
        {u"model"_qs, u"Small"_qs},
        {u"serial"_qs, serial},
        {u"resolutions"_qs, QJsonArray{resolution(320, 240, 100), resolution(160, 120, 100)}},
        {u"exposure"_qs, QJsonObject{{u"default"_qs, 1000}, {u"auto"_qs, false}}},
        {u"source"_qs, QJsonObject{{u"kind"_qs, u"patches"_qs}}},
    });
    return *this;
}

CtlScene& CtlScene::set(const QString& key, const QJsonValue& value) {
    QJsonObject camera = m_cameras.last().toObject();
    camera.insert(key, value);
    m_cameras.replace(m_cameras.size() - 1, camera);
    return *this;
}

CtlScene& CtlScene::setResolution(int width, int height, double fps) {
    return set(u"resolutions"_qs, QJsonArray{resolution(width, height, fps)});
}

CtlScene& CtlScene::addFault(const QJsonObject& step) {
    m_faults.append(step);
    return *this;
}

CtlScene& CtlScene::addFaults(const QList<QJsonObject>& steps) {
    for (const QJsonObject& step : steps)
        addFault(step);
    return *this;
}

QString CtlScene::writeTo(const QString& path) const {
    const QJsonObject scene{{u"cameras"_qs, m_cameras}, {u"faults"_qs, m_faults}};
    writeFile(path, QJsonDocument(scene).toJson());
    return path;
}

QJsonObject unplugAfter(int frames) {
    return {{u"do"_qs, u"unplug"_qs}, {u"camera"_qs, firstCamera}, {u"afterFrames"_qs, frames}};
}

QJsonObject stepAt(int ms, const QString& action) {
    return {{u"do"_qs, action}, {u"camera"_qs, firstCamera}, {u"atMs"_qs, ms}};
}

QJsonObject failing(const QString& function) {
    return {{u"do"_qs, u"fail"_qs}, {u"function"_qs, function}, {u"result"_qs, -2147467259}};
}

QList<QJsonObject> silence() {
    QList<QJsonObject> steps;
    for (const char* read : {"ResolutionNumber",
                             "Resolution",
                             "eSize",
                             "FinalSize",
                             "Roi",
                             "Option",
                             "MaxSpeed",
                             "Speed",
                             "AutoExpoEnable",
                             "AutoExpoTarget",
                             "ExpoTime",
                             "ExpTimeRange",
                             "ExpoAGain",
                             "ExpoAGainRange",
                             "TempTint",
                             "Hue",
                             "Saturation",
                             "Brightness",
                             "Contrast",
                             "Gamma",
                             "Chrome",
                             "VFlip",
                             "HFlip",
                             "Negative",
                             "HZ"})
        steps.append(failing(u"Toupcam_get_"_qs + QString::fromLatin1(read)));
    return steps;
}

QJsonObject hanging(const QString& function, int skip) {
    constexpr int hour = 3'600'000; // the longest time
    return {
        {u"do"_qs, u"delay"_qs}, {u"function"_qs, function}, {u"ms"_qs, hour}, {u"skip"_qs, skip}};
}
