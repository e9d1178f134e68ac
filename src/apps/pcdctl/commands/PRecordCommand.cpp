// SPDX-License-Identifier: MIT
#include <apps/pcdctl/commands/PCtlCommands.h>
#include <apps/pcdctl/runs/PRecordRun.h>
#include <apps/pcdctl/runs/PRunAndReport.h>

#include <apps/common/ome/POmeStackWriter.h>
#include <apps/common/picture/PPictureFile.h>

#include <QFileInfo>

namespace {

PCtlOutcome prepareStack(const QString& path) {
    const PStatus status = PPictureFile::prepareFolder(path);
    if (!status.isOk())
        return PCtlOutcome::failed(status.reason());
    const QFileInfo file(path);
    return file.exists() || file.isSymLink()
               ? PCtlOutcome::failed(
                     u"\"%1\" already exists, and files are never overwritten"_qs.arg(path))
               : PCtlOutcome();
}

} // namespace

PCtlOutcome prepareRecordFiles(const PCtlOptions& options) {
    if (POmeStackWriter::isName(options.output))
        return prepareStack(options.output);
    PCtlOptions series = options;
    series.savePattern = options.output;
    return prepareStreamFiles(series);
}

PCtlOutcome runRecordCommand(PCtlHost& host, const PCtlOptions& options) {
    return runAndReport<PRecordRun>(host, options);
}
