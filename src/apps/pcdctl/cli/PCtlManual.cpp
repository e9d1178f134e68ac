// SPDX-License-Identifier: MIT
#include <apps/pcdctl/cli/PCtlManual.h>

#include <apps/pcdctl/cli/PCtlSyntax.h>

#include <apps/common/program/PManualPage.h>

namespace {

void addCommands(PManualPage& page) {
    page.addSection(u"COMMANDS"_qs);
    for (const PCtlSyntax::CommandSyntax& command : PCtlSyntax::commands())
        page.addEntry(command.name, command.words, command.summary);
}

void addOptions(PManualPage& page) {
    page.addSection(u"OPTIONS"_qs);
    page.addParagraph(u"Options may come before or after the command. Those that not every command "
                      "takes end with the names of the commands that do."_qs);
    for (const PCtlSyntax::OptionSyntax& syntax : PCtlSyntax::options()) {
        const QStringList commands = PCtlSyntax::commandsWith(syntax);
        const bool isCommon = commands.size() == PCtlSyntax::commands().size();
        page.addOption(syntax.option,
                       isCommon ? QString() : u"(%1)"_qs.arg(commands.join(u", "_qs)));
    }
    for (const QCommandLineOption& option : PCtlSyntax::helpOptions())
        page.addOption(option);
}

void addExitCodes(PManualPage& page) {
    page.addSection(u"EXIT STATUS"_qs);
    const QStringList& codes = PCtlSyntax::exitCodes();
    for (qsizetype code = 0; code < codes.size(); ++code)
        page.addEntry(QString::number(code), {}, codes[code]);
}

void addExamples(PManualPage& page) {
    page.addSection(u"EXAMPLES"_qs);
    for (const PCtlSyntax::CommandSyntax& command : PCtlSyntax::commands())
        page.addLines(command.examples);
}

} // namespace

QString PCtlManual::page() {
    PManualPage page(u"pcdctl"_qs, PCtlSyntax::summary());
    page.addSynopsis(u"pcdctl"_qs, u"COMMAND [OPTION…] [WORD…]"_qs);
    addCommands(page);
    addOptions(page);
    addExitCodes(page);
    page.addEnvironment();
    page.addEntry(u"PCD_COMPLETION_SECONDS"_qs, {},
                  u"How long the completion of a shell waits for cameras, in seconds up to 3600. "
                  "Without it, 1."_qs);
    addExamples(page);
    page.addSeeAlso(
        {u"pcdview(1)"_qs, u"pcd-profile(5)"_qs, u"pcd-recording(5)"_qs, u"pcd-scene(5)"_qs});
    return page.text();
}
