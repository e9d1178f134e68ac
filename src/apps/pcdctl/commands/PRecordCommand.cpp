// SPDX-License-Identifier: MIT
#include <apps/pcdctl/commands/PCtlCommands.h>
#include <apps/pcdctl/runs/PRecordRun.h>
#include <apps/pcdctl/runs/PRunAndReport.h>

#include <apps/common/output/PRecordOutput.h>
#include <apps/common/picture/PPictureFile.h>

#include <QFileInfo>

namespace {

PCtlOutcome prepareSingle(const QString& path) {
    const QFileInfo file(path);
    if (file.exists() || file.isSymLink()) {
        return PCtlOutcome::failed(
            u"\"%1\" already exists, and files are never overwritten: expected a new name"_qs.arg(
                path));
    }
    const PStatus status = PPictureFile::prepareFolder(path);
    return status.isOk() ? PCtlOutcome() : PCtlOutcome::failed(status.reason());
}

} // namespace

PCtlOutcome prepareRecordFiles(const PCtlOptions& options) {
    if (PRecordOutput::toForm(options.output) != PRecordOutput::Form::Series)
        return prepareSingle(options.output);
    PCtlOptions series = options;
    series.savePattern = options.output;
    return prepareStreamFiles(series);
}

PCtlOutcome runRecordCommand(PCtlHost& host, const PCtlOptions& options) {
    return runAndReport<PRecordRun>(host, options);
}
