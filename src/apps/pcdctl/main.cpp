// SPDX-License-Identifier: MIT
#include <apps/pcdctl/camera/PCtlHost.h>
#include <apps/pcdctl/check/PCheckCommand.h>
#include <apps/pcdctl/cli/PCtlOutput.h>
#include <apps/pcdctl/cli/PCtlParser.h>
#include <apps/pcdctl/commands/PCtlCommands.h>
#include <apps/pcdctl/completion/PCompletion.h>
#include <apps/pcdctl/doctor/PDoctorCommand.h>
#include <apps/pcdctl/replay/PReplayRun.h>

#include <apps/common/crash/PCrashReport.h>
#include <apps/common/hang/POverdueCalls.h>
#include <apps/common/hang/PStderrLine.h>
#include <apps/common/program/PArgumentText.h>
#include <apps/common/program/PExceptionText.h>
#include <apps/common/program/PExitDeadline.h>
#include <apps/common/program/PStandardStreams.h>
#include <apps/common/program/PTerminationSignals.h>
#include <apps/common/program/PTranslations.h>

#include <PLog/PLog.h>

#include <QCoreApplication>

#include <algorithm>
#include <exception>
#include <optional>

namespace {

PCtlOutcome startLog(const PCtlOptions& options) {
    PLog::addSink(PCrashReport::logSink()); // first, so that it has what others are busy with
    PLog::addSink(std::make_shared<PStderrLogSink>());
    PLog::installQtMessageHandler();
    PLog::setFilter(u"warning"_qs);
    if (options.logFilter) {
        const PStatus status = PLog::setFilter(*options.logFilter);
        return status.isOk() ? PCtlOutcome()
                             : PCtlOutcome::wrongUsage(u"--log-level: "_qs + status.reason());
    }
    const PStatus status = PLog::setFilterFromEnvironment();
    return status.isOk() ? PCtlOutcome()
                         : PCtlOutcome::wrongUsage(u"PCD_LOG: "_qs + status.reason());
}

PCtlOutcome prepareFiles(const PCtlOptions& options) {
    switch (options.command) {
    case PCtlOptions::Command::Snap:
        return prepareSnapFiles(options);
    case PCtlOptions::Command::Stream:
    case PCtlOptions::Command::Trigger:
        return prepareStreamFiles(options);
    case PCtlOptions::Command::Profile:
        return prepareProfileFile(options);
    case PCtlOptions::Command::Record:
        return prepareRecordFiles(options);
    case PCtlOptions::Command::Check:
        return prepareCheck(options);
    default:
        return {};
    }
}

PCtlOutcome runCommand(PCtlHost& host, const PCtlOptions& options) {
    switch (options.command) {
    case PCtlOptions::Command::List:
        return runListCommand(host, options);
    case PCtlOptions::Command::Modes:
        return runModesCommand(host, options);
    case PCtlOptions::Command::Props:
        return runPropsCommand(host, options);
    case PCtlOptions::Command::Get:
        return runGetCommand(host, options);
    case PCtlOptions::Command::Set:
        return runSetCommand(host, options);
    case PCtlOptions::Command::Profile:
        return runProfileCommand(host, options);
    case PCtlOptions::Command::Reset:
        return runResetCommand(host, options);
    case PCtlOptions::Command::Snap:
        return runSnapCommand(host, options);
    case PCtlOptions::Command::Stream:
    case PCtlOptions::Command::Trigger:
        return runStreamCommand(host, options);
    case PCtlOptions::Command::Record:
        return runRecordCommand(host, options);
    case PCtlOptions::Command::Monitor:
        return runMonitorCommand(host, options);
    case PCtlOptions::Command::Check:
        return runCheckCommand(host, options);
    case PCtlOptions::Command::Doctor: // has no host: it examines why there may be none
    case PCtlOptions::Command::Replay: // runs another command
        break;
    }
    return PCtlOutcome::failed(u"unknown command"_qs);
}

/// A trace that is not complete is a failure, but not in place of another one.
PCtlOutcome withTrace(const PCtlHost& host, const PCtlOutcome& outcome) {
    const PCtlOutcome traced = host.checkTrace();
    if (outcome.isDone())
        return traced;
    if (!traced.isDone())
        PCtlOutput::printMessage(traced.message);
    return outcome;
}

/// On the watchdog's thread.
void reportCall(const PCallWatchdog::Call& call) {
    PStderrLine::write(u"pcdctl: "_qs + POverdueCalls::toText(call));
}

/// What is ignored.
void reportEnvironment(const PCtlOptions& options) {
    const PStatus language = PTranslations::checkEnvironment();
    if (!language.isOk() && options.language.isEmpty())
        PCtlOutput::printMessage(language.reason());
    const PStatus patience = POverdueCalls::checkEnvironment();
    if (!patience.isOk())
        PCtlOutput::printMessage(patience.reason());
}

/// Sooner than a check ends for it, so that it is known by then.
std::chrono::milliseconds findPatience(const PCtlOptions& options) {
    const bool isCheck = options.command == PCtlOptions::Command::Check;
    return isCheck ? std::min(POverdueCalls::patience(), options.hangTime() / 2)
                   : POverdueCalls::patience();
}

/// A check has no report before it has found the camera, and after it was printed, but must end
/// even if the driver does not return then.
void setDeadline(std::optional<PExitDeadline>& deadline, const PCtlOptions& options,
                 const QString& when) {
    if (options.command != PCtlOptions::Command::Check)
        return;
    PCtlOutput::flush();
    deadline.emplace(options.hangTime(), u"pcdctl: the driver does not return %1"_qs.arg(when),
                     PCtlOutcome::Failed);
}

PCtlOutcome runOnHost(const PCtlOptions& options) {
    std::optional<PExitDeadline> deadline; // outlasts the host, whose end the driver can hold up
    PCtlHost host;
    setDeadline(deadline, options, u"while cameras are searched for"_qs);
    const PCtlOutcome started = host.start(options);
    deadline.reset();
    if (!started.isDone())
        return started;
    const PCtlOutcome outcome = withTrace(host, runCommand(host, options));
    setDeadline(deadline, options, u"at the end of the check"_qs);
    return outcome;
}

PCtlOutcome runOptions(const PCtlOptions& options) {
    // First: whatever prints later must not get between the frames.
    if (options.pipe.takesStandardOutput())
        PStandardStreams::keepOutputForData();
    PCtlOutcome outcome = startLog(options);
    if (outcome.isDone())
        outcome = prepareFiles(options);
    if (!outcome.isDone())
        return outcome;
    reportEnvironment(options);
    const PCallWatchdog watchdog(reportCall, findPatience(options));
    if (options.command == PCtlOptions::Command::Doctor)
        return runDoctorCommand(options);
    if (options.command == PCtlOptions::Command::Check && options.check.listOnly)
        return runCheckList(options);
    return runOnHost(options);
}

PCtlOutcome runProgram(const QStringList& arguments) {
    if (arguments.value(1) == PCompletion::keyword()) {
        PCompletion::print(arguments.mid(2));
        return {};
    }
    PCtlParser parser;
    const PCtlOutcome outcome = parser.parse(arguments);
    if (!outcome.isDone())
        return outcome;
    if (!parser.answer().isEmpty()) {
        PCtlOutput::printLines(parser.answer());
        return {};
    }
    if (parser.options().command == PCtlOptions::Command::Replay)
        return PReplayRun(parser.options(), &runOptions).run();
    return runOptions(parser.options());
}

PCtlOutcome guardedRun(const QStringList& arguments) {
    try {
        return runProgram(arguments);
    } catch (const std::exception& error) {
        return PCtlOutcome::failed(PExceptionText::of(error));
    } catch (...) { // plugins may throw anything
        return PCtlOutcome::failed(u"unknown exception"_qs);
    }
}

} // namespace

int main(int argc, char* argv[]) {
    PStandardStreams::reserve();
    PTerminationSignals::watch();
    PCrashReport::install(argc, argv, QStringLiteral(PCD_VERSION));
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationVersion(QStringLiteral(PCD_VERSION));
    const PStatus arguments = PArgumentText::check(argc, argv);
    PCtlOutcome outcome = arguments.isOk() ? guardedRun(QCoreApplication::arguments())
                                           : PCtlOutcome::wrongUsage(arguments.reason());
    if (!PCtlOutput::flush() && outcome.isDone())
        outcome = PCtlOutcome::failed(u"cannot write to standard output"_qs);
    if (!outcome.isDone())
        PCtlOutput::printMessage(outcome.message);
    return outcome.code;
}
