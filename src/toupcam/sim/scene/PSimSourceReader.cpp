// SPDX-License-Identifier: MIT
#include <toupcam/sim/scene/PSimSourceReader.h>

#include <toupcam/sim/frame/PSimPicture.h>
#include <toupcam/sim/scene/PSimJsonObject.h>

#include <QDir>
#include <QFileInfo>
#include <QImageReader>
#include <algorithm>

namespace {

constexpr std::size_t mostRingBytes = std::size_t{1} << 30;

void checkPicture(const QString& path, const QString& place) {
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    if (!reader.canRead()) {
        throw PSimSceneError(place, u"%1 found, expected a picture file: %2"_qs.arg(
                                        PSimSceneError::shown(path), reader.errorString()));
    }
}

std::vector<QString> picturesAt(const QString& path, const QString& place) {
    const QFileInfo info(path);
    std::vector<QString> result;
    if (info.isDir()) {
        const QFileInfoList files =
            QDir(path).entryInfoList(QDir::Files | QDir::Readable, QDir::Name);
        for (const QFileInfo& file : files) {
            if (!QImageReader::imageFormat(file.filePath()).isEmpty())
                result.push_back(file.filePath());
        }
    } else if (info.isFile()) { // reading a pipe might block for ever
        checkPicture(path, place);
        result.push_back(path);
    }
    if (result.empty()) {
        throw PSimSceneError(place, u"%1 found, expected a picture file or a folder of them"_qs.arg(
                                        PSimSceneError::shown(path)));
    }
    return result;
}

void readPictureSource(PSimJsonObject& object, const QString& folder, PSimSourceSpec& source) {
    const QString name = object.requiredText("path");
    if (name.isEmpty()) // would be the folder itself
        object.complain("path", u"a picture file or a folder of them"_qs);
    const QString path = QDir(folder).filePath(name);
    source.pictures = picturesAt(path, object.place("path"));
    source.framesEach = object.integer("framesEach", source.framesEach, 1, 1000000);
}

void readSpecimenSource(PSimJsonObject& object, PSimSourceSpec& source) {
    using Kind = PSimSourceSpec::Kind;
    constexpr Kind kinds[] = {Kind::Tissue, Kind::Fluorescence};
    if (object.has("specimen"))
        source.kind = kinds[object.choice("specimen", {"tissue", "fluorescence"})];
    source.drift = object.integer("drift", source.drift, 0, 64);
}

void readLamp(PSimJsonObject& object, PSimSourceSpec& source) {
    source.lightKelvin = object.number("lightKelvin", source.lightKelvin, 2000, 15000);
    source.mainsHz = object.number("mainsHz", source.mainsHz, 0, 60);
    if (source.mainsHz != 0.0 && source.mainsHz != 50.0 && source.mainsHz != 60.0)
        object.complain("mainsHz", u"50, 60 or 0 (direct current)"_qs);
}

} // namespace

void PSimSourceReader::checkMemory(const PSimCameraSpec& camera, const QString& place) {
    if (camera.source.kind != PSimSourceSpec::Kind::Ring)
        return;
    std::size_t largest = 0;
    for (const PSimResolution& size : camera.resolutions) {
        PSimPicture frame;
        frame.width = size.width;
        frame.height = size.height;
        frame.bits = camera.bits;
        largest = std::max(largest, frame.bytes());
    }
    const std::size_t needed = largest * camera.source.ringFrames;
    if (needed > mostRingBytes) {
        throw PSimSceneError(
            place + u".frames"_qs,
            u"%1 frames of %2 bytes found, expected at most %3 bytes in all"_qs.arg(
                QString::number(camera.source.ringFrames), QString::number(largest),
                QString::number(mostRingBytes)));
    }
}

PSimSourceSpec PSimSourceReader::read(const QJsonValue& value, const QString& place,
                                      const QString& folder) {
    using Kind = PSimSourceSpec::Kind;
    constexpr Kind kinds[] = {Kind::Tissue, Kind::Flat, Kind::Picture, Kind::Patches, Kind::Ring};
    PSimSourceSpec source;
    PSimJsonObject object(value, place);
    source.kind = kinds[object.choice("kind", {"specimen", "flat", "picture", "patches", "ring"})];
    if (source.kind != Kind::Patches && source.kind != Kind::Ring)
        readLamp(object, source);
    if (source.kind == Kind::Tissue) {
        readSpecimenSource(object, source);
    } else if (source.kind == Kind::Flat) {
        source.level = object.number("level", source.level, 0, 1);
    } else if (source.kind == Kind::Picture) {
        readPictureSource(object, folder, source);
    } else if (source.kind == Kind::Ring) {
        source.ringFrames = object.integer("frames", source.ringFrames, 1, 64);
        source.unpaced = object.boolean("unpaced", source.unpaced);
    }
    object.finish();
    return source;
}
