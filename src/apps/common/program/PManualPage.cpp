// SPDX-License-Identifier: MIT
#include <apps/common/program/PManualPage.h>

#include <QCoreApplication>

namespace {

/// Text in which nothing is a command or an escape, and each "-" is one that can be copied.
QString plain(QString text) {
    text.replace(u'\\', u"\\e"_qs).replace(u'-', u"\\-"_qs);
    const bool isCommand = text.startsWith(u'.') || text.startsWith(u'\'');
    return isCommand ? u"\\&"_qs + text : text;
}

QString bold(const QString& text) {
    return u"\\fB"_qs + plain(text) + u"\\fR"_qs;
}

QString italic(const QString& text) {
    return text.isEmpty() ? QString() : u"\\fI"_qs + plain(text) + u"\\fR"_qs;
}

} // namespace

// No hyphens in names that users copy, and no wide gaps instead.
PManualPage::PManualPage(const QString& program, const QString& summary)
    : m_text(u".TH %1 1 \"\" \"pcd %2\" \"User Commands\"\n.nr HY 0\n.ad l\n"_qs.arg(
          program.toUpper(), QCoreApplication::applicationVersion())) {
    addSection(u"NAME"_qs);
    QString purpose = summary.left(1).toLower() + summary.mid(1);
    if (purpose.endsWith(u'.'))
        purpose.chop(1);
    m_text += u"%1 \\- %2\n"_qs.arg(plain(program), plain(purpose));
}

void PManualPage::addSection(const QString& title) {
    m_text += u".SH %1\n"_qs.arg(title);
}

void PManualPage::addSynopsis(const QString& program, const QString& arguments) {
    addSection(u"SYNOPSIS"_qs);
    m_text += bold(program) + u' ' + italic(arguments) + u'\n';
}

void PManualPage::addParagraph(const QString& text) {
    m_text += u".PP\n%1\n"_qs.arg(plain(text));
}

void PManualPage::addEntry(const QString& term, const QString& more, const QString& meaning) {
    m_text += u".TP\n%1\n%2\n"_qs.arg((bold(term) + u' ' + italic(more)).trimmed(), plain(meaning));
}

void PManualPage::addOption(const QCommandLineOption& option, const QString& more) {
    QStringList names;
    for (const QString& name : option.names())
        names.append(bold((name.size() == 1 ? u"-"_qs : u"--"_qs) + name));
    m_text += u".TP\n%1\n%2\n"_qs.arg(
        (names.join(u", "_qs) + u' ' + italic(option.valueName())).trimmed(),
        plain((option.description() + u' ' + more).trimmed()));
}

void PManualPage::addLines(const QString& lines) {
    m_text += u".PP\n.EX\n"_qs;
    for (const QString& line : lines.split(u'\n'))
        m_text += plain(line) + u'\n';
    m_text += u".EE\n"_qs;
}

void PManualPage::addEnvironment() {
    addSection(u"ENVIRONMENT"_qs);
    addEntry(u"TOUPCAM_LIBRARY"_qs, {},
             u"The path of the camera SDK that \"--sdk auto\" loads."_qs);
    addEntry(u"PCD_LOG"_qs, {}, u"Which log records to show, as for --log-level."_qs);
    addEntry(u"PCD_LANG"_qs, {}, u"The language, as for --lang."_qs);
    addEntry(
        u"PCD_CALL_SECONDS"_qs, {},
        u"How long a call of the camera's library may take before it is named, in seconds up to "
        "3600. Without it, less than a second."_qs);
    addEntry(
        u"XDG_STATE_HOME"_qs, {},
        u"The folder for state, ~/.local/state by default. A program that a fault ends leaves a "
        "report in pcd/crashes below it."_qs);
}

void PManualPage::addSeeAlso(const QStringList& pages) {
    addSection(u"SEE ALSO"_qs);
    QStringList references;
    for (const QString& page : pages) {
        const qsizetype section = page.indexOf(u'(');
        references.append(bold(page.left(section)) + page.mid(section));
    }
    m_text += references.join(u",\n"_qs) + u'\n';
}
