// SPDX-License-Identifier: MIT
#include <apps/pcdctl/camera/PCtlHost.h>
#include <apps/pcdctl/cli/PCtlOutput.h>
#include <apps/pcdctl/commands/PCtlCommands.h>

#include <PCore/PPrintableText.h>

#include <QJsonArray>

#include <algorithm>
#include <utility>

namespace {

QList<PCameraIdentity> presentCameras(PCtlHost& host) {
    QList<PCameraIdentity> cameras;
    for (const PDevice* device : host.manager().devices())
        cameras.append(host.identify(device));
    return cameras;
}

QJsonObject toJson(const PCameraSdk& sdk) {
    if (sdk.path().isEmpty())
        return {{u"kind"_qs, u"none"_qs}};
    QJsonObject object{{u"kind"_qs, sdk.isSimulated() ? u"simulated"_qs : u"maker"_qs},
                       {u"path"_qs, sdk.path()}};
    if (!sdk.version().isEmpty())
        object.insert(u"version"_qs, sdk.version());
    return object;
}

void printJson(const PCameraSdk& sdk, const QList<PCameraIdentity>& cameras) {
    QJsonArray array;
    for (int index = 0; index < cameras.size(); ++index) {
        QJsonObject camera = PCtlOutput::toJson(cameras.at(index));
        camera.insert(u"index"_qs, index);
        array.append(camera);
    }
    PCtlOutput::printDocument({{u"sdk"_qs, toJson(sdk)}, {u"cameras"_qs, array}});
}

/// Before the columns are made, whose width it changes.
PCameraIdentity toPrintable(const PCameraIdentity& camera) {
    return {PPrintableText::toLine(camera.id), PPrintableText::toLine(camera.model),
            PPrintableText::toLine(camera.serial), camera.simulated};
}

void printText(QList<PCameraIdentity> cameras) {
    std::transform(cameras.cbegin(), cameras.cend(), cameras.begin(), toPrintable);
    qsizetype idWidth = 2;
    qsizetype modelWidth = 5;
    for (const PCameraIdentity& camera : std::as_const(cameras)) {
        idWidth = qMax(idWidth, camera.id.size());
        modelWidth = qMax(modelWidth, camera.model.size());
    }
    const auto print = [&](const QString& index, const PCameraIdentity& camera,
                           const QString& kind) {
        PCtlOutput::printLine(QStringList{index.leftJustified(5), camera.id.leftJustified(idWidth),
                                          camera.model.leftJustified(modelWidth),
                                          camera.serial.leftJustified(10), kind}
                                  .join(u"  "_qs));
    };
    print(u"index"_qs, {u"id"_qs, u"model"_qs, u"serial"_qs, false}, u"kind"_qs);
    for (int index = 0; index < cameras.size(); ++index) {
        const PCameraIdentity& camera = cameras.at(index);
        print(QString::number(index), camera, camera.simulated ? u"simulated"_qs : u"real"_qs);
    }
}

} // namespace

PCtlOutcome runListCommand(PCtlHost& host, const PCtlOptions& options) {
    const QList<PCameraIdentity> cameras = presentCameras(host);
    if (options.json)
        printJson(host.sdk(), cameras);
    if (cameras.isEmpty()) {
        return PCtlOutcome::notFound(
            u"no camera found: connect one and check its power and cable, or try simulated ones "
            "with --sdk sim"_qs);
    }
    if (!options.json)
        printText(cameras);
    return {};
}
