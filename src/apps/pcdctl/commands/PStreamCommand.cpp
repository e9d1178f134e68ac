// SPDX-License-Identifier: MIT
#include <apps/pcdctl/commands/PCtlCommands.h>
#include <apps/pcdctl/runs/PRunAndReport.h>
#include <apps/pcdctl/runs/PStreamRun.h>

#include <apps/common/picture/PPictureFile.h>
#include <apps/common/record/PFileSequence.h>

PCtlOutcome prepareStreamFiles(const PCtlOptions& options) {
    if (options.savePattern.isEmpty())
        return {};
    PFileSequence files;
    PStatus status = files.setPattern(options.savePattern);
    if (status.isOk())
        status = PPictureFile::prepareFolder(files.path(1));
    if (!status.isOk())
        return PCtlOutcome::failed(status.reason());
    // Without a number of frames, the number of names is unknown.
    const QString existing = files.firstExisting(options.frames.value_or(1));
    if (existing.isEmpty())
        return {};
    return PCtlOutcome::failed(
        u"\"%1\" already exists, and files are never overwritten: expected a pattern for new files"_qs
            .arg(existing));
}

PCtlOutcome runStreamCommand(PCtlHost& host, const PCtlOptions& options) {
    return runAndReport<PStreamRun>(host, options);
}
