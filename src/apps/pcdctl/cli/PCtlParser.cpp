// SPDX-License-Identifier: MIT
#include <apps/pcdctl/cli/PCtlParser.h>

#include <apps/pcdctl/cli/PCtlManual.h>
#include <apps/pcdctl/cli/PCtlSyntax.h>

#include <apps/common/ome/POmeStackWriter.h>
#include <apps/common/output/PRecordOutput.h>
#include <apps/common/picture/PPictureFile.h>
#include <apps/common/program/PDurationText.h>
#include <apps/common/zarr/PZarrWriter.h>

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr quint64 mostFrames = 1'000'000'000;
constexpr double mostSeconds = 1'000'000;
constexpr double leastMicrometres = 0.0001; // light resolves nothing smaller
constexpr double mostMicrometres = 1'000'000;

QString commandNames() {
    QStringList names;
    for (const auto& command : PCtlSyntax::commands())
        names.append(command.name);
    return names.join(u", "_qs);
}

PCtlOutcome withHint(const QString& problem, const QString& command) {
    return PCtlOutcome::wrongUsage(u"%1\nTry \"pcdctl %2--help\"."_qs.arg(problem, command));
}

QString badCommand(const QString& word) {
    const QString problem =
        word.isEmpty() ? u"no command given"_qs : u"unknown command \"%1\""_qs.arg(word);
    return u"%1: expected one of %2"_qs.arg(problem, commandNames());
}

PCtlOutcome usageUnlessOk(const PStatus& status) {
    return status.isOk() ? PCtlOutcome() : PCtlOutcome::wrongUsage(status.reason());
}

PCtlOutcome wrongValue(const QString& value, const QString& option, const QString& expected) {
    return usageUnlessOk(PProgramOptions::wrongValue(option, value, expected));
}

PCtlOutcome readFrames(const QCommandLineParser& parser, const QString& option, quint64 most,
                       std::optional<quint64>& frames) {
    if (!parser.isSet(option))
        return {};
    bool isNumber = false;
    const quint64 count = parser.value(option).toULongLong(&isNumber);
    if (!isNumber || count < 1 || count > most) {
        return wrongValue(parser.value(option), option,
                          u"a whole number from 1 to %1"_qs.arg(most));
    }
    frames = count;
    return {};
}

PCtlOutcome readSeconds(const QCommandLineParser& parser, const QString& option,
                        std::optional<std::chrono::milliseconds>& time) {
    if (!parser.isSet(option))
        return {};
    bool isNumber = false;
    const double seconds = parser.value(option).toDouble(&isNumber);
    // The condition is negated so that "nan" is refused too.
    if (!isNumber || !(seconds >= 0.001 && seconds <= mostSeconds)) {
        return wrongValue(parser.value(option), option,
                          u"a number of seconds from 0.001 to %1"_qs.arg(mostSeconds, 0, 'f', 0));
    }
    time = std::chrono::milliseconds(std::llround(seconds * 1000));
    return {};
}

PCtlOutcome readPixelSize(const QCommandLineParser& parser, std::optional<double>& size) {
    const QString option = u"pixel-size"_qs;
    if (!parser.isSet(option))
        return {};
    bool isNumber = false;
    const double micrometres = parser.value(option).toDouble(&isNumber);
    if (!isNumber || !(micrometres >= leastMicrometres && micrometres <= mostMicrometres)) {
        return wrongValue(
            parser.value(option), option,
            u"a number of micrometres from %1 to %2"_qs.arg(
                QString::number(leastMicrometres), QString::number(mostMicrometres, 'f', 0)));
    }
    size = micrometres;
    return {};
}

QString withDashes(const QString& option) {
    return (option.size() == 1 ? u"-"_qs : u"--"_qs) + option;
}

/// Fails if an option is not one of this command's.
PCtlOutcome checkOption(const PCtlSyntax::CommandSyntax& syntax, const QString& name) {
    const PCtlSyntax::OptionSyntax* const option = PCtlSyntax::findOption(name);
    if (option == nullptr || option->commands.contains(syntax.command))
        return {};
    return withHint(
        u"%1 does not take the option %2: expected it with one of %3"_qs.arg(
            syntax.name, withDashes(name), PCtlSyntax::commandsWith(*option).join(u", "_qs)),
        syntax.name + u' ');
}

/// Fails if the command does not take these options, or this number of words.
PCtlOutcome checkArguments(const PCtlSyntax::CommandSyntax& syntax,
                           const QCommandLineParser& parser) {
    for (const QString& name : parser.optionNames()) {
        const PCtlOutcome outcome = checkOption(syntax, name);
        if (!outcome.isDone())
            return outcome;
    }
    const QStringList words = parser.positionalArguments();
    const qsizetype count = words.size() - 1; // the command is an argument too
    if (count > syntax.mostWords)
        return withHint(u"unexpected argument \"%1\""_qs.arg(words.at(syntax.mostWords + 1)),
                        syntax.name + u' ');
    if (count < syntax.leastWords)
        return withHint(
            u"%1 needs more arguments: expected %1 %2"_qs.arg(syntax.name, syntax.words),
            syntax.name + u' ');
    return {};
}

constexpr quint64 mostTriggered = 999; // as on the camera's panel

PCtlOutcome readExposure(const QString& text, PCtlOptions& options) {
    options.exposure = PDurationText::parse(text);
    if (options.exposure && options.exposure->count() > 0)
        return {};
    return wrongValue(text, u"exposure"_qs, u"a time such as 1s500ms, 20ms or 150us"_qs);
}

PCtlOutcome readTrigger(const QCommandLineParser& parser, PCtlOptions& options) {
    for (const auto& [one, other] : {std::pair("software", "external"), {"count", "repeat"}}) {
        if (parser.isSet(QString::fromLatin1(one)) && parser.isSet(QString::fromLatin1(other))) {
            return PCtlOutcome::wrongUsage(
                u"--%1 and --%2 cannot be used together: expected one of them"_qs.arg(
                    QString::fromLatin1(one), QString::fromLatin1(other)));
        }
    }
    if (parser.isSet(u"external"_qs))
        options.source = PTriggerControl::Source::External;
    if (!parser.isSet(u"repeat"_qs))
        options.frames = 1;
    PCtlOutcome outcome = readFrames(parser, u"count"_qs, mostTriggered, options.frames);
    if (outcome.isDone() && parser.isSet(u"exposure"_qs))
        outcome = readExposure(parser.value(u"exposure"_qs), options);
    return outcome;
}

PCtlOutcome readProfileAction(const QStringList& words, PCtlOptions& options) {
    using Action = PCtlOptions::ProfileAction;
    const QList<std::pair<QString, Action>> actions{
        {u"save"_qs, Action::Save}, {u"load"_qs, Action::Load}, {u"diff"_qs, Action::Diff}};
    const auto found = std::find_if(actions.begin(), actions.end(),
                                    [&](const auto& action) { return action.first == words[0]; });
    if (found == actions.end()) {
        return withHint(
            u"\"%1\" is nothing to do with a profile: expected save, load or diff"_qs.arg(words[0]),
            u"profile "_qs);
    }
    if (words[1].isEmpty())
        return withHint(u"\"\" names no file"_qs, u"profile "_qs);
    options.profileAction = found->second;
    options.profileFile = words[1];
    return {};
}

PCtlOutcome checkStack(const PCtlOptions& options) {
    if (options.frames.value_or(0) <= POmeStackWriter::framesAFileHolds)
        return {};
    return wrongValue(QString::number(*options.frames), u"frames"_qs,
                      u"at most %1 frames in one file"_qs.arg(POmeStackWriter::framesAFileHolds));
}

PCtlOutcome checkRecording(const PCtlOptions& options) {
    if (options.output.isEmpty())
        return withHint(u"record needs an output file: expected -o FILE"_qs, u"record "_qs);
    const PCtlOutcome name = usageUnlessOk(PRecordOutput::checkName(options.output));
    if (!name.isDone())
        return name;
    const PRecordOutput::Form form = PRecordOutput::toForm(options.output);
    if (options.pyramid && form != PRecordOutput::Form::Zarr) {
        return PCtlOutcome::wrongUsage(
            u"--pyramid is not for \"%1\": expected a name that ends in %2"_qs.arg(
                options.output, PZarrWriter::endings().join(u", "_qs)));
    }
    return form == PRecordOutput::Form::Stack ? checkStack(options) : PCtlOutcome();
}

} // namespace

PCtlOutcome PCtlParser::parse(const QStringList& arguments) {
    // With the options of all commands, to find which word is the command.
    QCommandLineParser parser;
    PCtlSyntax::addOptions(parser, nullptr);
    const bool understood = parser.parse(arguments);
    const QString word = parser.positionalArguments().value(0);
    const auto* const syntax = PCtlSyntax::findCommand(word);
    if (parser.isSet(u"version"_qs))
        m_answer = u"pcdctl "_qs + QCoreApplication::applicationVersion();
    else if (parser.isSet(u"help"_qs))
        m_answer = PCtlSyntax::helpText(syntax).trimmed();
    else if (PProgramOptions::isManualWanted(parser))
        m_answer = PCtlManual::page().trimmed();
    if (!m_answer.isEmpty())
        return {};
    if (syntax != nullptr && syntax->command == PCtlOptions::Command::Replay)
        return parseReplay(arguments);
    if (!understood)
        return withHint(parser.errorText(), syntax == nullptr ? QString() : word + u' ');
    if (syntax == nullptr)
        return withHint(badCommand(word), QString());
    const PCtlOutcome outcome = checkArguments(*syntax, parser);
    m_options.command = syntax->command;
    return outcome.isDone() ? readOptions(parser) : outcome;
}

/// What follows the file belongs to the command that is run.
PCtlOutcome PCtlParser::parseReplay(const QStringList& arguments) {
    const auto* const syntax = PCtlSyntax::findCommand(u"replay"_qs);
    qsizetype length = 0;
    QCommandLineParser parser;
    PCtlSyntax::addOptions(parser, nullptr);
    bool understood = false;
    do
        understood = parser.parse(arguments.mid(0, ++length));
    while (length < arguments.size() &&
           !(understood && parser.positionalArguments().size() > syntax->leastWords));
    if (!understood)
        return withHint(parser.errorText(), u"replay "_qs);
    const PCtlOutcome outcome = checkArguments(*syntax, parser);
    m_options.command = syntax->command;
    m_options.replayed = arguments.mid(length);
    return outcome.isDone() ? readOptions(parser) : outcome;
}

PCtlOutcome PCtlParser::readOptions(const QCommandLineParser& parser) {
    PCtlOutcome outcome =
        usageUnlessOk(m_options.read(parser, {u"mode"_qs, u"profile"_qs, u"set"_qs, u"output"_qs,
                                              u"save"_qs, u"exposure"_qs, u"to"_qs}));
    m_options.json = parser.isSet(u"json"_qs);
    m_options.mode = parser.value(u"mode"_qs);
    m_options.profile = parser.value(u"profile"_qs);
    m_options.sets = parser.values(u"set"_qs);
    m_options.words = parser.positionalArguments().mid(1);
    if (outcome.isDone())
        outcome = readNumbers(parser);
    return outcome.isDone() ? readFiles(parser) : outcome;
}

PCtlOutcome PCtlParser::readNumbers(const QCommandLineParser& parser) {
    if (parser.isSet(u"frames"_qs) && parser.isSet(u"time"_qs)) {
        return PCtlOutcome::wrongUsage(
            u"--frames and --time cannot be used together: expected one of them"_qs);
    }
    PCtlOutcome outcome = readFrames(parser, u"frames"_qs, mostFrames, m_options.frames);
    if (outcome.isDone())
        outcome = readSeconds(parser, u"time"_qs, m_options.duration);
    if (outcome.isDone())
        outcome = readSeconds(parser, u"timeout"_qs, m_options.timeout);
    if (outcome.isDone())
        outcome = readSeconds(parser, u"hang"_qs, m_options.hang);
    if (outcome.isDone() && m_options.command == PCtlOptions::Command::Trigger)
        outcome = readTrigger(parser, m_options);
    if (outcome.isDone())
        outcome = readSeconds(parser, u"interval"_qs, m_options.interval);
    if (outcome.isDone())
        outcome = readPixelSize(parser, m_options.pixelSizeUm);
    return outcome;
}

PCtlOutcome PCtlParser::readFiles(const QCommandLineParser& parser) {
    if (m_options.command == PCtlOptions::Command::Check)
        return usageUnlessOk(m_options.check.read(parser));
    if (m_options.command == PCtlOptions::Command::Doctor)
        return usageUnlessOk(m_options.doctor.read(parser));
    if (m_options.command == PCtlOptions::Command::Profile)
        return readProfileAction(m_options.words, m_options);
    m_options.output = parser.value(u"output"_qs);
    m_options.savePattern = parser.value(u"save"_qs);
    m_options.pyramid = parser.isSet(u"pyramid"_qs);
    if (m_options.command == PCtlOptions::Command::Snap) {
        if (m_options.output.isEmpty())
            return withHint(u"snap needs an output file: expected -o FILE"_qs, u"snap "_qs);
        return usageUnlessOk(PPictureFile::checkName(m_options.output));
    }
    if (m_options.command == PCtlOptions::Command::Record)
        return checkRecording(m_options);
    const PStatus pipe = m_options.pipe.read(parser);
    if (!pipe.isOk())
        return usageUnlessOk(pipe);
    if (parser.isSet(u"save"_qs))
        return usageUnlessOk(PRecordOutput::checkSeries(m_options.savePattern));
    return {};
}
