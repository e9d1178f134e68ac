// SPDX-License-Identifier: MIT
#include <apps/pcdctl/cli/PCtlSyntax.h>

#include <apps/common/ome/POmeStackWriter.h>
#include <apps/common/picture/PPictureFile.h>
#include <apps/common/zarr/PZarrWriter.h>

#include <algorithm>

namespace {

using Command = PCtlOptions::Command;
using Shared = PProgramOptions::Option;
using CommandSyntax = PCtlSyntax::CommandSyntax;
using OptionSyntax = PCtlSyntax::OptionSyntax;

constexpr int anyNumber = 1'000'000;

/// Those that prepare the camera before they do their work.
const QList<Command> prepared{Command::Props,   Command::Get,     Command::Set,
                              Command::Profile, Command::Reset,   Command::Snap,
                              Command::Stream,  Command::Trigger, Command::Record};
const QList<Command> oneCamera =
    prepared + QList<Command>{Command::Modes, Command::Check, Command::Doctor};
const QList<Command> everyCommand = oneCamera + QList<Command>{Command::List, Command::Monitor};
/// Those and the one that runs another command, whose cameras are in a file.
const QList<Command> withReplay = everyCommand + QList<Command>{Command::Replay};

QList<OptionSyntax> commonOptions() {
    return {
        {everyCommand,
         PProgramOptions::makeOption(
             Shared::Sdk,
             u"Camera SDK: \"sim\" (simulated cameras), the path of a library, or \"auto\": the "
             "library in TOUPCAM_LIBRARY, else the system's libtoupcam.so, else \"sim\"."_qs,
             u"SDK"_qs)},
        {everyCommand,
         PProgramOptions::makeOption(
             Shared::Scene, u"Show the simulated cameras of this scene file."_qs, u"FILE"_qs)},
        {withReplay,
         PProgramOptions::makeOption(
             Shared::PluginPath,
             u"Look for device plugins in this folder or file first. May be repeated."_qs,
             u"DIR"_qs)},
        {withReplay,
         PProgramOptions::makeOption(
             Shared::LogFilter,
             u"Which log records to show: debug, info, warning, error or off, then SOURCE=LEVEL "
             u"for "
             "single sources, separated by commas. Default: PCD_LOG, else \"warning\"."_qs,
             u"FILTER"_qs)},
        {withReplay,
         PProgramOptions::makeOption(
             Shared::Language,
             u"Language of titles and choices: \"en\" or \"ru\". Default: PCD_LANG, else the "
             "system's language."_qs,
             u"LANGUAGE"_qs)},
        {everyCommand,
         PProgramOptions::makeOption(
             Shared::Trace,
             u"Write all calls of the camera SDK to this new file, for a report of a fault; "
             "\"replay\" repeats them without the camera."_qs,
             u"FILE"_qs)},
        {everyCommand,
         PProgramOptions::makeOption(
             Shared::TraceFrames,
             u"With --trace: also write the pixels of all frames, to FILE.frames."_qs, {})},
        {withReplay, {u"json"_qs, u"Print the result as JSON on standard output."_qs}},
    };
}

QList<OptionSyntax> cameraOptions() {
    return {
        {oneCamera, PProgramOptions::makeOption(Shared::Camera,
                                                u"The camera: its index in \"list\", its id, or a "
                                                u"unique prefix of its id. Default: the "
                                                "first camera."_qs,
                                                u"CAMERA"_qs)},
        {prepared,
         {u"mode"_qs, u"Set this mode first: its id or name, as shown by \"modes\"."_qs, u"ID"_qs}},
        {prepared,
         {u"profile"_qs,
          u"Then apply this profile. With --mode, the mode of the profile is skipped."_qs,
          u"FILE"_qs}},
        {prepared,
         {u"set"_qs,
          u"Then set this property, or run this action (ID alone). May be repeated. \"props\" "
          "shows the properties."_qs,
          u"ID=VALUE"_qs}},
        {prepared + QList<Command>{Command::Check},
         {u"timeout"_qs,
          u"How long to wait for a picture or for the end of an action (trigger, check: beyond the "
          "exposure time)."_qs,
          u"SECONDS"_qs}},
    };
}

QList<OptionSyntax> commandOptions() {
    const QString endings = PPictureFile::endings().join(u", "_qs);
    return {
        {{Command::Snap, Command::Record},
         {{u"o"_qs, u"output"_qs},
          u"Where to save; missing folders are created. \"snap\": a picture file that ends in "
          "%1; it is replaced if it exists. \"record\": one file that ends in %2, a folder that "
          "ends in %3, or a series of picture files, with one run of # in the name for the number; "
          "existing files are never overwritten."_qs.arg(endings,
                                                         POmeStackWriter::endings().join(u", "_qs),
                                                         PZarrWriter::endings().join(u", "_qs)),
          u"FILE"_qs}},
        {{Command::Stream, Command::Record},
         {{u"n"_qs, u"frames"_qs}, u"End after this many frames."_qs, u"FRAMES"_qs}},
        {{Command::Stream, Command::Record, Command::Monitor},
         {{u"t"_qs, u"time"_qs}, u"End after this many seconds."_qs, u"SECONDS"_qs}},
        {{Command::Stream, Command::Trigger},
         {u"save"_qs,
          u"Save every frame. The file name has one run of # for the frame's number and ends in "
          "%1. Existing files are never overwritten."_qs.arg(endings),
          u"PATTERN"_qs}},
        {{Command::Stream},
         {u"to"_qs,
          u"Pass every frame on to another program: \"-\" is standard output, which then has "
          u"nothing "
          "but frames (the summary goes to standard error); else a named pipe or a new file."_qs,
          u"TARGET"_qs}},
        {{Command::Stream},
         {u"as"_qs,
          u"With --to: \"raw\" (the default), the pixels as they are, or \"y4m\", YUV4MPEG2 for "
          "players and encoders."_qs,
          u"FORM"_qs}},
        {{Command::Stream},
         {u"header"_qs,
          u"With --as raw: precede the frames by one line of JSON that describes them."_qs}},
        {{Command::Stream},
         {u"chroma"_qs,
          u"With --as y4m: 4:2:0 (\"420\", the default) or 4:4:4 (\"444\") for colours."_qs,
          u"SAMPLES"_qs}},
        {{Command::Trigger}, {u"software"_qs, u"Trigger from software (the default)."_qs}},
        {{Command::Trigger}, {u"external"_qs, u"Trigger from the camera's trigger input."_qs}},
        {{Command::Trigger},
         {u"exposure"_qs, u"Exposure time of a frame, such as 1s500ms, 20ms or 150us."_qs,
          u"TIME"_qs}},
        {{Command::Trigger},
         {u"count"_qs, u"Number of frames, 1 to 999. Default: 1."_qs, u"FRAMES"_qs}},
        {{Command::Trigger}, {u"repeat"_qs, u"Take frames until Ctrl-C."_qs}},
        {{Command::Record},
         {u"interval"_qs, u"Record one frame at this interval, the first at once."_qs,
          u"SECONDS"_qs}},
        {{Command::Record},
         {u"pyramid"_qs,
          u"With an output that ends in %1: also write each frame in half the size, a quarter, and "
          "so on, for viewers of large pictures."_qs.arg(PZarrWriter::endings().join(u", "_qs))}},
        {{Command::Snap, Command::Stream, Command::Trigger, Command::Record},
         {u"pixel-size"_qs,
          u"The size on the specimen of one pixel of the picture, in micrometres, for the "
          "metadata."_qs,
          u"UM"_qs}},
    };
}

QList<OptionSyntax> checkOptions() {
    return {
        {{Command::Check}, {u"list"_qs, u"Examine nothing; list the rules."_qs}},
        {{Command::Check},
         {u"filter"_qs,
          u"Examine only the rules with these ids, with * for any part, separated by commas. May "
          "be repeated."_qs,
          u"RULES"_qs}},
        {{Command::Check},
         {u"iterations"_qs, u"Run every case this many times. Default: 1."_qs, u"COUNT"_qs}},
        {{Command::Check},
         {u"hang"_qs,
          u"End the check with what is known if the driver does not return from a call for this "
          "long. Default: 30."_qs,
          u"SECONDS"_qs}},
        {{Command::Check},
         {u"junit"_qs, u"Also write the results to this file, in the format of JUnit."_qs,
          u"FILE"_qs}},
        {{Command::Check},
         {u"allow"_qs,
          u"Also examine the rules with these hazards, separated by commas: unplug (the camera is "
          "unplugged), heat (cooler and fan are switched), long (the longest exposure)."_qs,
          u"HAZARDS"_qs}},
    };
}

QList<OptionSyntax> doctorOptions() {
    return {
        {{Command::Doctor},
         {u"udev"_qs,
          u"Examine nothing; write the udev rule that gives users access to the USB device with "
          "these ids, four hexadecimal digits each, or to those \"found\" on the bus that can be "
          "cameras. May be repeated."_qs,
          u"VENDOR:PRODUCT"_qs}},
        {{Command::Doctor},
         {u"rule-file"_qs, u"Write the rule of --udev to this file, not to standard output."_qs,
          u"FILE"_qs}},
        {{Command::Doctor},
         {u"folder"_qs, u"Measure the disk of this folder. Default: the current folder."_qs,
          u"DIR"_qs}},
        {{Command::Doctor},
         {u"rate"_qs,
          u"Compare the disk with this rate, in megabytes per second. Default: what the camera "
          "sends in a short stream."_qs,
          u"MB"_qs}},
        {{Command::Doctor},
         {u"report"_qs,
          u"Also write the findings to this file, to attach to a report of a fault. Names of users "
          "and of the computer, and home folders, are left out."_qs,
          u"FILE"_qs}},
    };
}

QList<CommandSyntax> makeCommands() {
    return {
        {Command::List, u"list"_qs, u"Show the cameras that are present."_qs,
         u"pcdctl list\npcdctl list --json --sdk sim"_qs},
        {Command::Modes, u"modes"_qs, u"Show the modes (resolutions) of a camera."_qs,
         u"pcdctl modes\npcdctl modes -c 1"_qs},
        {Command::Props, u"props"_qs,
         u"Show the properties of a camera: values, ranges, groups."_qs,
         u"pcdctl props\npcdctl props contrast gamma\npcdctl props --json"_qs, u"[ID…]"_qs, 0,
         anyNumber},
        {Command::Get, u"get"_qs, u"Show the values of properties."_qs,
         u"pcdctl get contrast\npcdctl get roi binning --mode 1 --json"_qs, u"ID…"_qs, 1,
         anyNumber},
        {Command::Set, u"set"_qs,
         u"Set properties in the given order, and show the values the camera then has."_qs,
         u"pcdctl set contrast=12 negative=on\npcdctl set \"binning=Add 2x2\" roi=0,0,640,480\n"
         "pcdctl set awbonce"_qs,
         u"ID=VALUE…"_qs, 1, anyNumber},
        {Command::Profile, u"profile"_qs,
         u"Save the settings of a camera to a file, load a file, or compare with one."_qs,
         u"pcdctl profile save slide.json --set contrast=12\npcdctl profile load slide.json\n"
         "pcdctl profile diff slide.json"_qs,
         u"save|load|diff FILE"_qs, 2, 2},
        {Command::Reset, u"reset"_qs, u"Set these properties, or all, to their defaults."_qs,
         u"pcdctl reset --profile slide.json\npcdctl reset contrast gamma"_qs, u"[ID…]"_qs, 0,
         anyNumber},
        {Command::Snap, u"snap"_qs, u"Take a still and save it."_qs,
         u"pcdctl snap -o out/a.png\npcdctl snap -o slide.tif --mode 2736x1824\n"
         "pcdctl snap -o b.png --profile slide.json --set contrast=20"_qs},
        {Command::Stream, u"stream"_qs,
         u"Run the live stream, count its frames, and save them or pass them on if requested."_qs,
         u"pcdctl stream -t 5\npcdctl stream -n 60 --json\n"
         "pcdctl stream -n 100 --mode 2 --save \"run/frame-####.png\"\n"
         "pcdctl stream --to - --as y4m | ffplay -"_qs},
        {Command::Trigger, u"trigger"_qs, u"Take frames on a trigger."_qs,
         u"pcdctl trigger --count 25 --save \"out/t-####.png\"\n"
         "pcdctl trigger --exposure 1s500ms\npcdctl trigger --external --count 10 --timeout 60"_qs},
        {Command::Record, u"record"_qs, u"Record the live stream into files."_qs,
         u"pcdctl record -n 100 -o run.ome.tif\n"
         "pcdctl record -t 3600 --interval 10 -o \"lapse/frame-####.png\"\n"
         "pcdctl record -o run.ome.tif --pixel-size 0.345\n"
         "pcdctl record -n 100 -o run.ome.zarr --pyramid"_qs},
        {Command::Monitor, u"monitor"_qs, u"Show cameras as they come and go."_qs,
         u"pcdctl monitor\npcdctl monitor -t 60 --json"_qs},
        {Command::Check, u"check"_qs,
         u"Examine whether a camera and its driver do what programs rely on."_qs,
         u"pcdctl check\npcdctl check --plugin-path build --junit check.xml\n"
         "pcdctl check --list --filter \"stream.*\"\npcdctl check --allow unplug,heat,long"_qs},
        {Command::Doctor, u"doctor"_qs,
         u"Examine SDK, plugins, USB, disk and clock, and say how to fix what is wrong."_qs,
         u"pcdctl doctor\npcdctl doctor --folder /data --report doctor.txt\n"
         "pcdctl doctor --udev found | sudo tee /etc/udev/rules.d/70-pcd-camera.rules"_qs},
        {Command::Replay, u"replay"_qs,
         u"Run a command against a trace (see --trace) in place of a camera: the given one, else "
         u"the recorded one, whose files are not kept."_qs,
         u"pcdctl snap -o a.png --trace a.trace\npcdctl replay a.trace\n"
         "pcdctl replay a.trace snap -o b.png"_qs,
         u"FILE [COMMAND…]"_qs, 1, anyNumber},
    };
}

QString indented(const QString& lines) {
    return u"  "_qs + QString(lines).replace(u'\n', u"\n  "_qs) + u'\n';
}

QString commandSummaries() {
    QString text = u"\nCommands:\n"_qs;
    for (const CommandSyntax& command : PCtlSyntax::commands())
        text += u"  %1%2\n"_qs.arg(command.name.leftJustified(10), command.summary);
    return text + u"\n\"pcdctl COMMAND --help\" shows the options and examples of a command.\n"_qs;
}

QString exitCodeLines() {
    QString text = u"\nExit codes:\n"_qs;
    const QStringList& codes = PCtlSyntax::exitCodes();
    for (qsizetype code = 0; code < codes.size(); ++code)
        text += u"  %1  %2\n"_qs.arg(QString::number(code), codes[code]);
    return text;
}

QString programHelp() {
    QCommandLineParser parser;
    for (const OptionSyntax& syntax : commonOptions())
        parser.addOption(syntax.option);
    parser.addOptions(PCtlSyntax::helpOptions());
    parser.setApplicationDescription(PCtlSyntax::summary());
    parser.addPositionalArgument(u"command"_qs, u"What to do; see below."_qs);
    return parser.helpText() + commandSummaries() + exitCodeLines();
}

} // namespace

const QList<CommandSyntax>& PCtlSyntax::commands() {
    static const QList<CommandSyntax> all = makeCommands();
    return all;
}

const CommandSyntax* PCtlSyntax::findCommand(const QString& name) {
    const QList<CommandSyntax>& all = commands();
    const auto found = std::find_if(
        all.begin(), all.end(), [&](const CommandSyntax& command) { return command.name == name; });
    return found == all.end() ? nullptr : &*found;
}

const QList<OptionSyntax>& PCtlSyntax::options() {
    static const QList<OptionSyntax> all =
        cameraOptions() + commandOptions() + checkOptions() + doctorOptions() + commonOptions();
    return all;
}

const OptionSyntax* PCtlSyntax::findOption(const QString& name) {
    const QList<OptionSyntax>& all = options();
    const auto found = std::find_if(all.begin(), all.end(), [&](const OptionSyntax& syntax) {
        return syntax.option.names().contains(name);
    });
    return found == all.end() ? nullptr : &*found;
}

QStringList PCtlSyntax::commandsWith(const OptionSyntax& option) {
    QStringList names;
    for (const CommandSyntax& command : commands()) {
        if (option.commands.contains(command.command))
            names.append(command.name);
    }
    return names;
}

void PCtlSyntax::addOptions(QCommandLineParser& parser, const CommandSyntax* command) {
    for (const OptionSyntax& syntax : options()) {
        if (command == nullptr || syntax.commands.contains(command->command))
            parser.addOption(syntax.option);
    }
    parser.addOptions(helpOptions());
    parser.addOption(PProgramOptions::manualOption());
}

QList<QCommandLineOption> PCtlSyntax::helpOptions() {
    return {{{u"h"_qs, u"help"_qs}, u"Show this help."_qs},
            {{u"v"_qs, u"version"_qs}, u"Show the version."_qs}};
}

QString PCtlSyntax::summary() {
    return u"Controls microscope cameras from the command line."_qs;
}

const QStringList& PCtlSyntax::exitCodes() {
    static const QStringList all{u"done"_qs, u"failed"_qs, u"wrong usage"_qs,
                                 u"no such camera, or no camera at all"_qs,
                                 u"doctor found warnings, but no errors"_qs};
    return all;
}

QString PCtlSyntax::helpText(const CommandSyntax* command) {
    if (command == nullptr)
        return programHelp();
    QCommandLineParser parser;
    addOptions(parser, command);
    parser.setApplicationDescription(command->summary);
    const QString form =
        command->words.isEmpty() ? command->name : command->name + u' ' + command->words;
    parser.addPositionalArgument(command->name, command->summary, form);
    return parser.helpText() + u"\nExamples:\n"_qs + indented(command->examples) + exitCodeLines();
}
