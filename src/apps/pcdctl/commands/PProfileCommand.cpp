// SPDX-License-Identifier: MIT
#include <apps/pcdctl/camera/PCameraSetup.h>
#include <apps/pcdctl/camera/PWithCamera.h>
#include <apps/pcdctl/cli/PCtlOutput.h>
#include <apps/pcdctl/commands/PCtlCommands.h>
#include <apps/pcdctl/properties/PPropertyJson.h>

#include <apps/common/picture/PPictureFile.h>

#include <PCd/profile/PDeviceProfileDiff.h>
#include <PCd/profile/PDeviceProfileFile.h>
#include <PCd/property/value/PPropertyText.h>

#include <QFileInfo>

namespace {

using Difference = PDeviceProfileDiff::Difference;

/// The part that all results have in common.
QJsonObject commonFields(const PCameraSession& session, const PCtlOptions& options) {
    return {{u"camera"_qs, session.cameraId()},
            {u"file"_qs, QFileInfo(options.profileFile).absoluteFilePath()}};
}

PCtlOutcome saveProfile(PCameraSession& session, const PCtlOptions& options) {
    const PStatus status = PDeviceProfileFile::save(*session.device(), options.profileFile);
    if (!status.isOk())
        return PCtlOutcome::failed(status.reason());
    const QJsonObject head = commonFields(session, options);
    if (options.json)
        PCtlOutput::printDocument(head);
    else
        PCtlOutput::printLine(u"%1: the settings of camera %2"_qs.arg(
            PCtlOutput::toSaved(head.value(u"file"_qs).toString(), options.keepsFiles),
            session.cameraId()));
    return {};
}

void printReport(QJsonObject head, const PDeviceProfileReport& report, bool json) {
    if (json) {
        head.insert(u"applied"_qs, PPropertyJson::ids(report.applied));
        head.insert(u"refused"_qs, PPropertyJson::reportItems(report.refused));
        head.insert(u"ignored"_qs, PPropertyJson::reportItems(report.ignored));
        head.insert(u"missing"_qs, PPropertyJson::ids(report.missing));
        if (!report.note.isEmpty())
            head.insert(u"note"_qs, report.note);
        PCtlOutput::printDocument(head);
        return;
    }
    PCtlOutput::printLine(u"Loaded %1: %2 values set"_qs.arg(
        head.value(u"file"_qs).toString(), QString::number(report.applied.size())));
    if (!report.note.isEmpty())
        PCtlOutput::printLine(u"note: "_qs + report.note);
    for (const QString& line : PPropertyJson::reportLines(report.ignored))
        PCtlOutput::printLine(u"not set: "_qs + line);
    for (const QByteArray& id : report.missing)
        PCtlOutput::printLine(u"not in the file: "_qs + QString::fromLatin1(id));
}

PCtlOutcome loadProfile(PCameraSession& session, const PCtlOptions& options) {
    PDeviceProfileReport report;
    const PCtlOutcome outcome =
        PCameraSetup(session, options).loadProfile(options.profileFile, report);
    if (!outcome.isDone())
        return outcome;
    printReport(commonFields(session, options), report, options.json);
    return report.isComplete()
               ? PCtlOutcome()
               : PCtlOutcome::failed(PPropertyJson::reportLines(report.refused).join(u'\n'));
}

QJsonObject toJson(const Difference& difference) {
    QJsonObject object{{u"id"_qs, QString::fromUtf8(difference.id)}};
    if (!difference.inFile.isNull())
        object.insert(u"inFile"_qs, difference.inFile);
    if (!difference.onCamera.isNull())
        object.insert(u"onCamera"_qs, difference.onCamera);
    return object;
}

QString toText(const Difference& difference) {
    const QString id = PPropertyText::shortened(QString::fromUtf8(difference.id));
    if (difference.inFile.isNull())
        return u"%1: not in the file, camera %2"_qs.arg(id, difference.onCamera);
    if (difference.onCamera.isNull())
        return u"%1: file %2, not a saved property of the camera"_qs.arg(
            id, PPropertyText::shortened(difference.inFile));
    return u"%1: file %2, camera %3"_qs.arg(id, PPropertyText::shortened(difference.inFile),
                                            difference.onCamera);
}

void printDifferences(QJsonObject head, const QList<Difference>& differences, bool json) {
    QJsonArray array;
    for (const Difference& difference : differences) {
        array.append(toJson(difference));
        if (!json)
            PCtlOutput::printLine(toText(difference));
    }
    if (!json)
        return;
    head.insert(u"same"_qs, differences.isEmpty());
    head.insert(u"differences"_qs, array);
    PCtlOutput::printDocument(head);
}

PCtlOutcome diffProfile(PCameraSession& session, const PCtlOptions& options) {
    PDeviceProfile profile;
    const PStatus status = PDeviceProfileFile::read(options.profileFile, profile);
    if (!status.isOk())
        return PCtlOutcome::failed(status.reason());
    QList<Difference> differences;
    const PStatus found = PDeviceProfileDiff::find(profile, *session.device(), differences);
    if (!found.isOk())
        return session.readOutcome(found);
    printDifferences(commonFields(session, options), differences, options.json);
    if (differences.isEmpty())
        return {};
    return PCtlOutcome::failed(u"the camera differs from \"%1\" in %2 settings"_qs.arg(
        options.profileFile, QString::number(differences.size())));
}

} // namespace

PCtlOutcome prepareProfileFile(const PCtlOptions& options) {
    if (options.profileAction != PCtlOptions::ProfileAction::Save)
        return {};
    const PStatus status = PPictureFile::prepareFolder(options.profileFile);
    return status.isOk() ? PCtlOutcome() : PCtlOutcome::failed(status.reason());
}

PCtlOutcome runProfileCommand(PCtlHost& host, const PCtlOptions& options) {
    return withCamera(host, options, [&](PCameraSession& session) {
        switch (options.profileAction) {
        case PCtlOptions::ProfileAction::Save:
            return saveProfile(session, options);
        case PCtlOptions::ProfileAction::Load:
            return loadProfile(session, options);
        case PCtlOptions::ProfileAction::Diff:
            return diffProfile(session, options);
        }
        return PCtlOutcome::failed(u"unknown action"_qs);
    });
}
