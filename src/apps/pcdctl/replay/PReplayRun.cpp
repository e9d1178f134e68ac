// SPDX-License-Identifier: MIT
#include <apps/pcdctl/replay/PReplayRun.h>

#include <apps/pcdctl/cli/PCtlOutput.h>
#include <apps/pcdctl/cli/PCtlParser.h>

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

namespace {

using Command = PCtlOptions::Command;

constexpr qsizetype mostShown = 10;

/// Another command without an answer of its own, such as help.
PCtlOutcome parse(const QStringList& arguments, PCtlOptions& options) {
    PCtlParser parser;
    PCtlOutcome outcome = parser.parse(QStringList{u"pcdctl"_qs} + arguments);
    if (!outcome.isDone())
        return outcome;
    options = parser.options();
    if (!parser.answer().isEmpty() || options.command == Command::Replay)
        return PCtlOutcome::wrongUsage(
            u"\"%1\" cannot be replayed: expected a command that uses cameras"_qs.arg(
                arguments.join(u' ')));
    return {};
}

/// Moves the files that a recorded command would write to a folder: its names are of another
/// computer, and must replace nothing on this one.
void redirectFiles(PCtlOptions& options, const QString& folder) {
    const bool isSaved = options.command == Command::Profile &&
                         options.profileAction == PCtlOptions::ProfileAction::Save;
    QString unused;
    for (QString* const file : {&options.output, &options.savePattern, &options.pipe.target,
                                isSaved ? &options.profileFile : &unused, &options.check.junitFile,
                                &options.doctor.report, &options.doctor.ruleFile}) {
        if (!file->isEmpty())
            *file = QDir(folder).filePath(QFileInfo(*file).fileName());
    }
    options.doctor.folder = folder; // where the disk is measured, by writing
    options.keepsFiles = false;
}

} // namespace

PReplayRun::PReplayRun(const PCtlOptions& options, const Command& command)
    : m_options(options)
    , m_command(command) {
}

PCtlOutcome PReplayRun::run() {
    const PStatus loaded = m_replay.load(m_options.words.first());
    if (!loaded.isOk())
        return PCtlOutcome::failed(loaded.reason());
    PCtlOptions command;
    PCtlOutcome outcome = readCommand(command);
    if (!outcome.isDone())
        return outcome;
    const QTemporaryDir folder;
    if (m_options.replayed.isEmpty()) {
        if (!folder.isValid())
            return PCtlOutcome::failed(folder.errorString());
        redirectFiles(command, folder.path());
    }
    const PCtlOutcome result = judge(m_command(command));
    if (!QDir(folder.path()).isEmpty() && !command.keepsFiles) {
        PCtlOutput::printMessage(
            u"%1: the files of the recorded command are not kept; to keep files, name a command "
            "after the trace"_qs.arg(m_options.words.first()));
    }
    return result;
}

PCtlOutcome PReplayRun::readCommand(PCtlOptions& command) const {
    const bool isRecorded = m_options.replayed.isEmpty();
    if (isRecorded && m_replay.program() != u"pcdctl"_qs) {
        return PCtlOutcome::wrongUsage(
            u"\"%1\" is a trace of %2: expected a command of pcdctl after the file"_qs.arg(
                m_options.words.first(), m_replay.program()));
    }
    const PCtlOutcome outcome =
        parse(isRecorded ? m_replay.arguments() : m_options.replayed, command);
    // Those of the recording name files of another computer.
    if (isRecorded) {
        command.trace.clear();
        command.traceFrames = false;
        command.pluginPaths.clear();
    }
    command.pluginPaths += m_options.pluginPaths;
    command.sdk = m_replay.library();
    command.scene.clear();
    if (!m_options.language.isEmpty())
        command.language = m_options.language;
    if (m_options.logFilter)
        command.logFilter = m_options.logFilter;
    command.json = command.json || m_options.json;
    return outcome;
}

PCtlOutcome PReplayRun::judge(const PCtlOutcome& outcome) const {
    const PSdkReplay::Report report = m_replay.report();
    const QString& file = m_options.words.first();
    if (!report.notice.isEmpty())
        PCtlOutput::printMessage(u"%1: %2"_qs.arg(file, report.notice));
    const QString calls = u"%1: %2 calls of the SDK, "_qs.arg(file, QString::number(report.calls));
    if (report.divergences.isEmpty()) {
        PCtlOutput::printMessage(calls + u"all as recorded"_qs);
        return outcome;
    }
    if (!outcome.isDone())
        PCtlOutput::printMessage(outcome.message);
    for (const QString& text : report.divergences.mid(0, mostShown))
        PCtlOutput::printMessage(u"%1: %2"_qs.arg(file, text));
    return PCtlOutcome::failed(
        calls + u"%1 differences from the recording"_qs.arg(report.divergences.size()));
}
