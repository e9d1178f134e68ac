// SPDX-License-Identifier: MIT
#include <apps/pcdctl/doctor/PDoctorCommand.h>

#include <apps/pcdctl/cli/PCtlOutput.h>
#include <apps/pcdctl/doctor/PDoctorRun.h>

#include <apps/common/doctor/PDoctorReport.h>
#include <apps/common/file/PResultFile.h>
#include <apps/common/system/PUdevRules.h>
#include <apps/common/system/PUsbBus.h>

#include <QFile>

#include <algorithm>

namespace {

using Severity = PFinding::Severity;

/// The ids of --udev, each once. Reports which of them are not connected.
QList<PUsbId> collectIds(const PDoctorOptions& options, const PSystemTree& system) {
    QList<PUsbId> ids = options.udevIds;
    const QList<PUsbDevice> devices = PUsbBus::devices(system);
    for (const PUsbId& id : options.udevIds) {
        if (std::none_of(devices.begin(), devices.end(),
                         [&](const PUsbDevice& device) { return device.id == id; })) {
            PCtlOutput::printMessage(
                u"no device %1 is connected now; the rule is written anyway"_qs.arg(id.toText()));
        }
    }
    if (options.udevForFound) {
        for (const PUsbDevice& device : PUsbBus::possibleCameras(system))
            ids.append(device.id);
    }
    QList<PUsbId> different;
    for (const PUsbId& id : ids) {
        if (!different.contains(id))
            different.append(id);
    }
    return different;
}

PCtlOutcome writeWhole(const QString& file, const QByteArray& content) {
    const PStatus status = PResultFile::write(file, content);
    return status.isOk() ? PCtlOutcome() : PCtlOutcome::failed(status.reason());
}

/// Before anything is examined.
PStatus checkReport(const PDoctorOptions& options) {
    return options.report.isEmpty() ? PStatus(PStatus::Ok) : PResultFile::check(options.report);
}

PCtlOutcome writeRule(const PDoctorOptions& options, const PSystemTree& system) {
    const QList<PUsbId> ids = collectIds(options, system);
    if (ids.isEmpty()) {
        return PCtlOutcome::notFound(
            u"no USB device on the bus can be a camera: connect it, or give its VENDOR:PRODUCT"_qs);
    }
    QFile file(u":/pcdctl/pcd-camera.rules.in"_qs);
    if (!file.open(QIODevice::ReadOnly))
        return PCtlOutcome::failed(u"the template of the udev rules is missing in this program"_qs);
    const QByteArray rules = PUdevRules::makeFile(file.readAll(), ids);
    if (!options.ruleFile.isEmpty())
        return writeWhole(options.ruleFile, rules);
    PCtlOutput::printLines(QString::fromLatin1(rules.trimmed()));
    return {};
}

void printFindings(const QList<PFinding>& findings, bool json) {
    if (json) {
        PCtlOutput::printDocument(PDoctorReport(findings).toJson());
        return;
    }
    for (const PFinding& finding : findings)
        PCtlOutput::printLines(finding.toText());
}

PCtlOutcome judgeFindings(const QList<PFinding>& findings) {
    const auto count = [&](Severity severity) {
        return std::count_if(findings.begin(), findings.end(), [severity](const PFinding& finding) {
            return finding.severity == severity;
        });
    };
    const QString text = u"errors: %1, warnings: %2"_qs.arg(
        QString::number(count(Severity::Error)), QString::number(count(Severity::Warning)));
    switch (PFinding::findWorst(findings)) {
    case Severity::Error:
        return PCtlOutcome::failed(text);
    case Severity::Warning:
        return PCtlOutcome::warned(text);
    case Severity::Ok:
    case Severity::Note:
        return {};
    }
    return {};
}

} // namespace

PCtlOutcome runDoctorCommand(const PCtlOptions& options) {
    const PSystemTree system = PSystemTree::fromEnvironment();
    if (options.doctor.isForRule())
        return writeRule(options.doctor, system);
    const PStatus report = checkReport(options.doctor);
    if (!report.isOk())
        return PCtlOutcome::failed(report.reason());
    PDoctorRun run(options, system);
    const PCtlOutcome outcome = run.run();
    if (!outcome.isDone())
        return outcome;
    printFindings(run.findings(), options.json);
    if (!options.doctor.report.isEmpty()) {
        const QString text = PDoctorReport(run.findings()).toText(PReportPrivacy::ofThisSystem());
        const PCtlOutcome written = writeWhole(options.doctor.report, text.toUtf8());
        if (!written.isDone())
            return written;
    }
    return judgeFindings(run.findings());
}
