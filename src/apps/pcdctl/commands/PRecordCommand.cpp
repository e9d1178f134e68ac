// SPDX-License-Identifier: MIT
#include <apps/pcdctl/camera/PCtlHost.h>
#include <apps/pcdctl/cli/PCtlOutput.h>
#include <apps/pcdctl/commands/PCtlCommands.h>
#include <apps/pcdctl/runs/PRecordRun.h>

#include <apps/common/ome/POmeStackWriter.h>
#include <apps/common/picture/PPictureFile.h>
#include <apps/common/record/PFileSequence.h>

#include <QFileInfo>

namespace {

void print(const PRecordReport& report, bool json) {
    if (json)
        PCtlOutput::printDocument(report.toJson());
    else
        PCtlOutput::printLine(report.toText());
}

PCtlOutcome prepareStack(const QString& path) {
    const PStatus status = PPictureFile::prepareFolder(path);
    if (!status.isOk())
        return PCtlOutcome::failed(status.reason());
    const QFileInfo file(path);
    return file.exists() || file.isSymLink()
               ? PCtlOutcome::failed(
                     u"\"%1\" exists already, and recordings overwrite no files"_qs.arg(path))
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
    const PCtlHost::Choice choice = host.choose(options.camera);
    if (choice.device == nullptr)
        return choice.outcome;
    PRecordRun run(host.manager(), choice.device, host.identityOf(choice.device), options);
    const PCtlOutcome outcome = run.run();
    if (run.wasStarted())
        print(run.report(outcome), options.json);
    return outcome;
}
