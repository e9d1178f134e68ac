// SPDX-License-Identifier: MIT
#include <apps/pcdctl/commands/PCtlCommands.h>
#include <apps/pcdctl/runs/PPipeRun.h>
#include <apps/pcdctl/runs/PRunAndReport.h>
#include <apps/pcdctl/runs/PStreamRun.h>

#include <apps/common/picture/PPictureFile.h>
#include <apps/common/program/PStandardStreams.h>
#include <apps/common/record/PFileSequence.h>

#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>
#include <unistd.h>

namespace {

PCtlOutcome existsAlready(const QString& path, const QString& expected) {
    return PCtlOutcome::failed(
        u"\"%1\" already exists, and files are never overwritten: expected %2"_qs.arg(path,
                                                                                      expected));
}

/// True for "/dev/stdout" and the like, if that is a pipe: the summary would get between the
/// frames.
bool isOutputPipe(const QString& path) {
    struct stat target {};
    struct stat output {};
    return ::stat(QFile::encodeName(path).constData(), &target) == 0 &&
           ::fstat(STDOUT_FILENO, &output) == 0 && target.st_dev == output.st_dev &&
           target.st_ino == output.st_ino && (S_ISFIFO(target.st_mode) || S_ISSOCK(target.st_mode));
}

PCtlOutcome preparePipe(const PPipeOptions& pipe) {
    if (pipe.takesStandardOutput()) {
        if (isatty(PStandardStreams::dataOutput()) == 0)
            return {};
        return PCtlOutcome::wrongUsage(
            u"standard output is a terminal, which cannot show frames: expected a pipe or a file, "
            "as in \"pcdctl stream --to - --as y4m | ffplay -\""_qs);
    }
    if (isOutputPipe(pipe.target)) {
        return PCtlOutcome::wrongUsage(
            u"\"%1\" is standard output: expected \"-\""_qs.arg(pipe.target));
    }
    const QFileInfo file(pipe.target);
    if (file.isFile() || (file.isSymLink() && !file.exists()))
        return existsAlready(pipe.target, u"a new file, or a named pipe"_qs);
    if (file.exists() && !file.isDir())
        return {}; // a named pipe or a device
    const PStatus status = PPictureFile::prepareFolder(pipe.target);
    return status.isOk() ? PCtlOutcome() : PCtlOutcome::failed(status.reason());
}

} // namespace

PCtlOutcome prepareStreamFiles(const PCtlOptions& options) {
    if (options.pipe.isUsed())
        return preparePipe(options.pipe);
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
    return existing.isEmpty() ? PCtlOutcome()
                              : existsAlready(existing, u"a pattern for new files"_qs);
}

PCtlOutcome runStreamCommand(PCtlHost& host, const PCtlOptions& options) {
    return options.pipe.isUsed() ? runAndReport<PPipeRun>(host, options)
                                 : runAndReport<PStreamRun>(host, options);
}
