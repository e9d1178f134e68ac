// SPDX-License-Identifier: MIT
#include <apps/pcdctl/camera/PCtlHost.h>
#include <apps/pcdctl/cli/PCtlOutput.h>
#include <apps/pcdctl/commands/PCtlCommands.h>

#include <PCd/device/PDevice.h>
#include <PCd/property/PReadWatch.h>

#include <QJsonArray>

namespace {

QJsonObject toJson(const PDeviceMode& mode, bool isCurrent) {
    return {{u"id"_qs, QString::fromLatin1(mode.id)},
            {u"name"_qs, mode.name},
            {u"width"_qs, mode.width},
            {u"height"_qs, mode.height},
            {u"bitDepth"_qs, mode.bitDepth},
            {u"current"_qs, isCurrent}};
}

QString toText(const PDeviceMode& mode, bool isCurrent) {
    const QString text = u"%1  %2  %3 x %4 pixels, %5 bits"_qs.arg(
        QString::fromLatin1(mode.id).leftJustified(3), mode.name.leftJustified(12),
        QString::number(mode.width), QString::number(mode.height), QString::number(mode.bitDepth));
    return isCurrent ? text + u"  (current)"_qs : text;
}

} // namespace

PCtlOutcome runModesCommand(PCtlHost& host, const PCtlOptions& options) {
    const PCtlHost::Choice choice = host.choose(options.camera);
    if (choice.device == nullptr)
        return choice.outcome;
    const PReadWatch watch;
    const PDeviceMode current = choice.device->getCurrentMode();
    const QList<PDeviceMode> modes = choice.device->getSupportModes();
    const QString id = host.identify(choice.device).id;
    if (watch.hasFailed())
        return PCtlOutcome::failed(u"camera %1 did not report its modes"_qs.arg(id));
    QJsonArray array;
    for (const PDeviceMode& mode : modes) {
        array.append(toJson(mode, mode == current));
        if (!options.json)
            PCtlOutput::printLine(toText(mode, mode == current));
    }
    if (options.json)
        PCtlOutput::printDocument({{u"camera"_qs, id}, {u"modes"_qs, array}});
    return {};
}
