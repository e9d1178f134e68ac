// SPDX-License-Identifier: MIT
#include <apps/pcdctl/camera/PCtlHost.h>
#include <apps/pcdctl/cli/PCtlOutput.h>
#include <apps/pcdctl/cli/PCtlParser.h>
#include <apps/pcdctl/commands/PCtlCommands.h>
#include <apps/pcdctl/completion/PCompletion.h>
#include <apps/pcdctl/doctor/PDoctorCommand.h>

#include <apps/common/program/PArgumentText.h>
#include <apps/common/program/PTerminationSignals.h>
#include <apps/common/program/PTranslations.h>

#include <PLog/PLog.h>

#include <QCoreApplication>

#include <exception>

namespace {

PCtlOutcome startLog(const PCtlOptions& options) {
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
    case PCtlOptions::Command::Doctor:
        break; // has no host: it examines why there may be none
    }
    return PCtlOutcome::failed(u"unknown command"_qs);
}

PCtlOutcome runOptions(const PCtlOptions& options) {
    PCtlOutcome outcome = startLog(options);
    if (outcome.isDone())
        outcome = prepareFiles(options);
    if (!outcome.isDone())
        return outcome;
    const PStatus language = PTranslations::checkEnvironment();
    if (!language.isOk() && options.language.isEmpty())
        PCtlOutput::printMessage(language.reason());
    if (options.command == PCtlOptions::Command::Doctor)
        return runDoctorCommand(options);
    PCtlHost host;
    outcome = host.start(options);
    return outcome.isDone() ? runCommand(host, options) : outcome;
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
    if (parser.answer().isEmpty())
        return runOptions(parser.options());
    PCtlOutput::printLines(parser.answer());
    return {};
}

PCtlOutcome guardedRun(const QStringList& arguments) {
    try {
        return runProgram(arguments);
    } catch (const std::exception& error) {
        return PCtlOutcome::failed(QString::fromLocal8Bit(error.what()));
    }
}

} // namespace

int main(int argc, char* argv[]) {
    PTerminationSignals::watch();
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
