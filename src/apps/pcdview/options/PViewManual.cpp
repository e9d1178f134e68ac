// SPDX-License-Identifier: MIT
#include <apps/pcdview/options/PViewManual.h>

#include <apps/common/program/PManualPage.h>
#include <apps/pcdview/options/PViewOptions.h>

namespace {

void addExitCodes(PManualPage& page) {
    page.addSection(u"EXIT STATUS"_qs);
    page.addEntry(
        u"0"_qs, {},
        u"The window was closed, by the user or by a signal, or the screenshot saved."_qs);
    page.addEntry(
        u"1"_qs, {},
        u"The screenshot could not be saved, the trace ends early, there is no display, or the "
        "program failed."_qs);
    page.addEntry(u"2"_qs, {},
                  u"Wrong usage: a wrong option or scene, or a trace that cannot be written."_qs);
}

} // namespace

QString PViewManual::page() {
    PManualPage page(u"pcdview"_qs, PViewOptions::summary());
    page.addSynopsis(u"pcdview"_qs, u"[OPTION…] [PROFILE]"_qs);
    page.addSection(u"ARGUMENTS"_qs);
    page.addEntry(u"PROFILE"_qs, {}, PViewOptions::profileHelp());
    page.addSection(u"OPTIONS"_qs);
    for (const QCommandLineOption& option : PViewOptions::all())
        page.addOption(option);
    addExitCodes(page);
    page.addEnvironment();
    page.addEntry(u"PCD_CLOSING_SECONDS"_qs, {},
                  u"How long cameras may take to close before the program ends without them, in "
                  "seconds up to 3600. Without it, 10."_qs);
    page.addSection(u"FILES"_qs);
    page.addEntry(u"~/.config/pcd/pcdview.conf"_qs, {},
                  u"Layout, theme, capture folder and what else the window remembers."_qs);
    page.addSeeAlso(
        {u"pcdctl(1)"_qs, u"pcd-profile(5)"_qs, u"pcd-recording(5)"_qs, u"pcd-scene(5)"_qs});
    return page.text();
}
