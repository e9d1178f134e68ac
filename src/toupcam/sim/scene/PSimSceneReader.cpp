// SPDX-License-Identifier: MIT
#include <toupcam/sim/scene/PSimSceneReader.h>

#include <toupcam/sim/scene/PSimFaultReader.h>
#include <toupcam/sim/scene/PSimJsonObject.h>
#include <toupcam/sim/scene/PSimRepeatedKeys.h>
#include <toupcam/sim/scene/PSimSourceReader.h>
#include <toupcam/toupcam.h>

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace {

const QString unreadable = u"cannot be read"_qs;
constexpr qint64 largestFile = qint64(16) << 20;       // bytes
constexpr double maxExactInteger = 9007199254740992.0; // 2^53: JSON numbers are doubles

struct FlagName {
    const char* name;
    std::uint64_t flag;
};

constexpr FlagName knownFlags[] = {
    {"MONO", TOUPCAM_FLAG_MONO},
    {"USB30", TOUPCAM_FLAG_USB30},
    {"TEC_ONOFF", TOUPCAM_FLAG_TEC_ONOFF},
    {"USB30_OVER_USB20", TOUPCAM_FLAG_USB30_OVER_USB20},
    {"FAN", TOUPCAM_FLAG_FAN},
    {"TRIGGER_SOFTWARE", TOUPCAM_FLAG_TRIGGER_SOFTWARE},
    {"TRIGGER_EXTERNAL", TOUPCAM_FLAG_TRIGGER_EXTERNAL},
    {"BANDWIDTH", TOUPCAM_FLAG_BANDWIDTH},
    {"USB32_OVER_USB30", TOUPCAM_FLAG_USB32_OVER_USB30},
};

std::uint64_t flagByName(const QJsonValue& value, const QString& place) {
    QStringList names;
    for (const FlagName& known : knownFlags) {
        if (value.toString() == QLatin1String(known.name))
            return known.flag;
        names += QLatin1String(known.name);
    }
    throw PSimSceneError(place, u"%1 found, expected one of %2"_qs.arg(PSimSceneError::shown(value),
                                                                       names.join(u", ")));
}

std::uint64_t readFlags(PSimJsonObject& object) {
    const QJsonValue value = object.value("flags");
    if (value.isString()) {
        bool ok = false;
        const qulonglong flags = value.toString().toULongLong(&ok, 16);
        if (!ok)
            object.complain("flags", u"a hexadecimal number such as \"0x40\""_qs);
        return flags;
    }
    std::uint64_t flags = 0;
    object.forEach("flags", [&flags](const QJsonValue& name, const QString& place) {
        flags |= flagByName(name, place);
    });
    return flags;
}

PSimResolution readResolution(const QJsonValue& value, const QString& place) {
    PSimJsonObject object(value, place);
    PSimResolution result;
    result.width = object.integer("width", 0U, 16, 16384);
    result.height = object.integer("height", 0U, 16, 16384);
    result.framesPerSecond = object.number("fps", result.framesPerSecond, 0.01, 10000);
    for (const char* key : {"width", "height"}) {
        if (!object.has(key))
            object.complain(key, u"a whole number from 16 to 16384"_qs);
    }
    object.finish();
    return result;
}

PSimExposureSpec readExposure(const QJsonValue& value, const QString& place) {
    PSimExposureSpec result;
    PSimJsonObject object(value, place);
    result.minimum = object.integer("min", result.minimum, 1, PSimJsonObject::maxUnsigned);
    result.maximum = object.integer("max", std::max(result.maximum, result.minimum), result.minimum,
                                    PSimJsonObject::maxUnsigned);
    const auto inRange = [&result](unsigned microseconds) {
        return std::clamp(microseconds, result.minimum, result.maximum);
    };
    result.initial =
        object.integer("default", inRange(result.initial), result.minimum, result.maximum);
    result.automatic = object.boolean("auto", result.automatic);
    result.target = object.integer("target", result.target, 10, 235);
    result.automaticMaximum =
        object.integer("autoMax", inRange(result.automaticMaximum), result.minimum, result.maximum);
    object.finish();
    return result;
}

PSimGainSpec readGain(const QJsonValue& value, const QString& place) {
    PSimGainSpec result;
    PSimJsonObject object(value, place);
    result.minimum = object.integer("min", result.minimum, 1, 65535);
    result.maximum =
        object.integer("max", std::max(result.maximum, result.minimum), result.minimum, 65535);
    result.initial =
        object.integer("default", std::clamp(result.initial, result.minimum, result.maximum),
                       result.minimum, result.maximum);
    object.finish();
    return result;
}

PSimSensorSpec readSensor(const QJsonValue& value, const QString& place) {
    PSimSensorSpec result;
    PSimJsonObject object(value, place);
    result.fullWell = object.number("fullWell", result.fullWell, 10, 1e7);
    result.electronsPerCount =
        object.number("electronsPerCount", result.electronsPerCount, 0.1, 1e5);
    result.offset = object.number("offset", result.offset, 0, 64);
    result.readNoise = object.number("readNoise", result.readNoise, 0, 1e4);
    result.electronsPerMs = object.number("electronsPerMs", result.electronsPerMs, 0.001, 1e7);
    result.darkCurrent = object.number("darkCurrent", result.darkCurrent, 0, 1e6);
    object.finish();
    return result;
}

PSimExternalTriggerSpec readExternalTrigger(const QJsonValue& value, const QString& place) {
    PSimExternalTriggerSpec result;
    PSimJsonObject object(value, place);
    const double ms = object.number("periodMs", 1000.0, 0.1, 3600000);
    result.period = std::chrono::microseconds(std::llround(1000.0 * ms));
    result.count = object.integer("count", result.count, 0, maxExactInteger);
    object.finish();
    return result;
}

QByteArray checkedText(PSimJsonObject& object, const char* key, const QString& fallback,
                       qsizetype maximum) {
    const QByteArray text = object.text(key, fallback).toUtf8();
    if (text.size() > maximum)
        object.complain(key, u"at most %1 bytes"_qs.arg(maximum));
    return text;
}

QByteArray readId(PSimJsonObject& object) {
    const QByteArray id = object.requiredText("id").toUtf8();
    const bool printable =
        std::all_of(id.cbegin(), id.cend(), [](char c) { return c > ' ' && c < '\x7f'; });
    if (id.isEmpty() || id.size() > 64 || !printable)
        object.complain("id", u"1 to 64 printable ASCII characters without blanks"_qs);
    return id;
}

void readIdentity(PSimJsonObject& object, PSimCameraSpec& camera) {
    camera.id = readId(object);
    if (object.isNull("model"))
        object.value("model");
    else
        camera.model = checkedText(object, "model", u"Simulated"_qs, 255);
    camera.displayName = checkedText(object, "displayName",
                                     QString::fromUtf8(camera.model.value_or(QByteArray())), 63);
    camera.serial = checkedText(object, "serial", QString(), 31);
}

void readResolutions(PSimJsonObject& object, PSimCameraSpec& camera) {
    object.forEach("resolutions", [&camera](const QJsonValue& item, const QString& where) {
        camera.resolutions.push_back(readResolution(item, where));
    });
    if (camera.resolutions.empty() || camera.resolutions.size() > TOUPCAM_MODEL_MAX_RES)
        object.complain("resolutions", u"1 to 16 resolutions"_qs);
}

void readHardware(PSimJsonObject& object, PSimCameraSpec& camera) {
    camera.flags = readFlags(object);
    readResolutions(object, camera);
    camera.speedLevels = object.integer("speedLevels", camera.speedLevels, 1, 65535);
    camera.bits = object.integer("bits", camera.bits, 8, 24);
    if (camera.bits != 8 && camera.bits != 24)
        object.complain("bits", u"8 (grey) or 24 (colour)"_qs);
    camera.pixelSize = float(object.number("pixelSizeUm", double(camera.pixelSize), 0.1, 1000));
    camera.fanLevels = object.integer("fanLevels", camera.fanLevels, 0, 100);
    camera.ambientCelsius = object.number("ambientC", camera.ambientCelsius, -40, 60);
    camera.thermalSpeed = object.number("thermalSpeed", camera.thermalSpeed, 0, 1e6);
    camera.linkMegabytes = object.number("linkMegabytes", camera.linkMegabytes, 0, 1e6);
    camera.plugged = object.boolean("plugged", camera.plugged);
}

PSimCameraSpec readCamera(const QJsonValue& value, const QString& place, const QString& folder) {
    PSimCameraSpec camera;
    PSimJsonObject object(value, place);
    readIdentity(object, camera);
    readHardware(object, camera);
    if (const QJsonValue exposure = object.value("exposure"); !exposure.isUndefined())
        camera.exposure = readExposure(exposure, object.place("exposure"));
    if (const QJsonValue gain = object.value("gain"); !gain.isUndefined())
        camera.gain = readGain(gain, object.place("gain"));
    if (const QJsonValue sensor = object.value("sensor"); !sensor.isUndefined())
        camera.sensor = readSensor(sensor, object.place("sensor"));
    if (const QJsonValue trigger = object.value("externalTrigger"); !trigger.isUndefined())
        camera.externalTrigger = readExternalTrigger(trigger, object.place("externalTrigger"));
    if (const QJsonValue source = object.value("source"); !source.isUndefined())
        camera.source = PSimSourceReader::read(source, object.place("source"), folder);
    PSimSourceReader::checkMemory(camera, object.place("source"));
    object.finish();
    return camera;
}

void addCamera(PSimScene& scene, PSimCameraSpec camera, const QString& place) {
    const bool taken = std::any_of(scene.cameras.cbegin(), scene.cameras.cend(),
                                   [&camera](const auto& other) { return other.id == camera.id; });
    if (taken) {
        throw PSimSceneError(place + u".id"_qs,
                             u"\"%1\" found, expected an id no other camera has"_qs.arg(
                                 QString::fromUtf8(camera.id)));
    }
    scene.cameras.push_back(std::move(camera));
}

PSimScene toScene(const QJsonValue& root, const QString& folder) {
    PSimScene scene;
    PSimJsonObject object(root, u"scene"_qs);
    scene.seed = object.integer("seed", scene.seed, 0, maxExactInteger);
    object.forEach("cameras", [&](const QJsonValue& item, const QString& place) {
        addCamera(scene, readCamera(item, place, folder), place);
    });
    if (scene.cameras.size() > TOUPCAM_MAX)
        object.complain("cameras", u"at most 128 cameras"_qs);
    object.forEach("faults", [&scene](const QJsonValue& item, const QString& place) {
        scene.faults.push_back(PSimFaultReader::read(item, place, scene));
    });
    object.finish();
    return scene;
}

/// Nothing but a file of an ordinary size: a device or pipe may have no end, or block for ever.
QByteArray readBytes(const QString& path) {
    const QFileInfo info(path);
    if (info.exists() && !info.isFile())
        throw PSimSceneError(unreadable, u"it is not a file, expected one with a scene in JSON"_qs);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw PSimSceneError(unreadable, file.errorString());
    const QByteArray text = file.read(largestFile + 1);
    if (file.error() != QFile::NoError)
        throw PSimSceneError(unreadable, file.errorString());
    if (text.size() > largestFile)
        throw PSimSceneError(unreadable,
                             u"it is too large, expected at most %1 bytes"_qs.arg(largestFile));
    return text;
}

} // namespace

PSimScene PSimSceneReader::read(const QByteArray& json, const QString& folder) {
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError) {
        throw PSimSceneError(PSimSceneError::line(json, error.offset),
                             u"%1, expected JSON"_qs.arg(error.errorString()));
    }
    if (!document.isObject())
        throw PSimSceneError(u"scene"_qs, u"expected an object"_qs);
    PSimRepeatedKeys::check(json);
    return toScene(document.object(), folder);
}

PSimScene PSimSceneReader::readFile(const QString& path) {
    return read(readBytes(path), QFileInfo(path).absolutePath());
}

PSimScene PSimSceneReader::builtin() {
    return read(builtinText());
}
