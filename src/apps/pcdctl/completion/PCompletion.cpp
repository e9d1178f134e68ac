// SPDX-License-Identifier: MIT
#include <apps/pcdctl/completion/PCompletion.h>

#include <apps/pcdctl/cli/PCtlOutput.h>
#include <apps/pcdctl/completion/PCameraCandidates.h>
#include <apps/pcdctl/completion/PCompletionLine.h>
#include <apps/pcdctl/completion/PFileCandidates.h>

#include <apps/common/pipe/PStreamTarget.h>

#include <QDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <thread>

namespace {

using Command = PCtlOptions::Command;

const PCandidates anyFile{{u":files"_qs}};

constexpr double usualSeconds = 1; // a shell does not react before the program has ended
constexpr double longestSeconds = 3600;

/// The time after which the user gets no candidates.
std::chrono::duration<double> timeLimit() {
    const double seconds = qEnvironmentVariable("PCD_COMPLETION_SECONDS").toDouble();
    return std::chrono::duration<double>(seconds > 0 ? std::min(seconds, longestSeconds)
                                                     : usualSeconds);
}

/// Ends the program, without candidates, when the time is over; not while some are being printed.
void endInTime(const std::shared_ptr<std::mutex>& printing) {
    // On a thread of its own: a call of the SDK that does not return blocks the main thread.
    std::thread([printing, limit = timeLimit()] {
        std::this_thread::sleep_for(limit);
        const std::lock_guard lock(*printing);
        std::_Exit(0);
    }).detach();
}

PCandidates toCandidates(const QStringList& texts) {
    PCandidates candidates;
    for (const QString& text : texts)
        candidates.append({text});
    return candidates;
}

/// A shell replaces "~" only in words that it has finished.
QString withHome(const QString& path) {
    return path.startsWith(u"~/"_qs) ? QDir::homePath() + path.mid(1) : path;
}

PCameraCandidates startCameras(const PCompletionLine& line) {
    PCtlOptions options = line.cameraOptions();
    options.sdk = withHome(options.sdk);
    options.scene = withHome(options.scene);
    for (QString& path : options.pluginPaths)
        path = withHome(path);
    return PCameraCandidates(options);
}

/// Those of these settings or ids that were not given yet: a command takes each once.
PCandidates without(const QStringList& given, const PCandidates& candidates) {
    const auto toName = [](const QString& setting) { return setting.section(u'=', 0, 0); };
    PCandidates left;
    for (const PCandidate& candidate : candidates) {
        if (std::none_of(given.begin(), given.end(), [&](const QString& word) {
                return toName(word) == toName(candidate.text);
            }))
            left.append(candidate);
    }
    return left;
}

PCandidates commandCandidates() {
    PCandidates candidates;
    for (const PCtlSyntax::CommandSyntax& command : PCtlSyntax::commands())
        candidates.append({command.name, command.summary});
    return candidates;
}

QString toFirstSentence(const QString& text) {
    const qsizetype end = text.indexOf(u". "_qs);
    return end < 0 ? text : text.left(end + 1);
}

PCandidates optionCandidates(const PCompletionLine& line) {
    const QStringList repeatable{u"set"_qs, u"plugin-path"_qs};
    PCandidates candidates;
    for (const PCtlSyntax::OptionSyntax& syntax : PCtlSyntax::options()) {
        const QString name = syntax.option.names().last();
        const bool isTaken =
            line.command() == nullptr || syntax.commands.contains(line.command()->command);
        if (isTaken && (!line.isGiven(name) || repeatable.contains(name)))
            candidates.append({u"--"_qs + name, toFirstSentence(syntax.option.description())});
    }
    for (const QCommandLineOption& option : PCtlSyntax::helpOptions())
        candidates.append({u"--"_qs + option.names().last(), option.description()});
    return candidates;
}

PCandidates outputCandidates(const PCompletionLine& line) {
    const Command command = line.command() == nullptr ? Command::Snap : line.command()->command;
    return PFileCandidates::forOutput(command, line.typed()) + anyFile;
}

/// The values of the options that need no camera.
PCandidates plainValues(const PCompletionLine& line) {
    const QString& option = line.option();
    if (option == u"sdk"_qs)
        return toCandidates({u"auto"_qs, u"sim"_qs}) + anyFile;
    if (option == u"lang"_qs)
        return toCandidates({u"en"_qs, u"ru"_qs});
    if (option == u"log-level"_qs)
        return toCandidates({u"debug"_qs, u"info"_qs, u"warning"_qs, u"error"_qs, u"off"_qs});
    if (option == u"output"_qs)
        return outputCandidates(line);
    if (option == u"save"_qs)
        return PFileCandidates::forSeries(line.typed()) + anyFile;
    if (option == u"to"_qs)
        return toCandidates({PStreamTarget::standardOutput()}) + anyFile;
    if (option == u"as"_qs)
        return toCandidates({u"raw"_qs, u"y4m"_qs});
    if (option == u"chroma"_qs)
        return toCandidates({u"420"_qs, u"444"_qs});
    if (option == u"allow"_qs)
        return toCandidates(PCheckOptions::hazards());
    const bool isFile =
        QStringList{u"scene"_qs, u"plugin-path"_qs, u"profile"_qs, u"junit"_qs, u"trace"_qs}
            .contains(option);
    return isFile ? anyFile : PCandidates();
}

PCandidates valueCandidates(const PCompletionLine& line) {
    if (line.option() == u"camera"_qs)
        return startCameras(line).cameras();
    if (line.option() == u"mode"_qs)
        return startCameras(line).modes();
    if (line.option() == u"set"_qs)
        return without(line.values(u"set"_qs), startCameras(line).settings(line.typed()));
    return plainValues(line);
}

PCandidates profileCandidates(const PCompletionLine& line) {
    if (line.arguments().isEmpty())
        return toCandidates({u"save"_qs, u"load"_qs, u"diff"_qs});
    return line.arguments().size() == 1 ? anyFile : PCandidates();
}

PCandidates argumentCandidates(const PCompletionLine& line) {
    if (line.command() == nullptr)
        return {};
    switch (line.command()->command) {
    case Command::Props:
    case Command::Get:
        return without(line.arguments(), startCameras(line).properties());
    case Command::Reset:
        return without(line.arguments(), startCameras(line).propertiesWithDefaults());
    case Command::Set:
        return without(line.arguments() + line.values(u"set"_qs),
                       startCameras(line).settings(line.typed()));
    case Command::Profile:
        return profileCandidates(line);
    case Command::Replay:
        return line.arguments().isEmpty() ? anyFile : PCandidates();
    default:
        return {};
    }
}

PCandidates candidatesFor(const PCompletionLine& line) {
    switch (line.part()) {
    case PCompletionLine::Part::Command:
        return commandCandidates();
    case PCompletionLine::Part::Option:
        return optionCandidates(line);
    case PCompletionLine::Part::OptionValue:
        return valueCandidates(line);
    case PCompletionLine::Part::Argument:
        break;
    }
    return argumentCandidates(line);
}

} // namespace

void PCompletion::print(const QStringList& words) {
    // The SDK, the plugins and Qt write there too.
    if (std::freopen("/dev/null", "w", stderr) == nullptr)
        return;
    const auto printing = std::make_shared<std::mutex>();
    endInTime(printing);
    const PCompletionLine line(words);
    const PCandidates candidates = candidatesFor(line);
    const std::lock_guard lock(*printing);
    for (const PCandidate& candidate : candidates) {
        if (candidate.text == anyFile.first().text)
            PCtlOutput::printLine(candidate.text);
        else if (candidate.text.startsWith(line.typed()))
            PCtlOutput::printColumns(line.start() + candidate.text, candidate.description);
    }
    PCtlOutput::flush();
}
