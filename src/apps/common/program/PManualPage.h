// SPDX-License-Identifier: MIT
#pragma once

#include <QCommandLineOption>
#include <QStringList>

/// The manual page of a program, in the language of man(7). The main thread.
class PManualPage {
public:
    /// The page of a program, with its purpose in one sentence.
    PManualPage(const QString& program, const QString& summary);

    /// Begins a section; what is added next belongs to it.
    void addSection(const QString& title);
    /// How the program is started.
    void addSynopsis(const QString& program, const QString& arguments);
    void addParagraph(const QString& text);
    /// A term and what it means; `more` follows the term as a name to be replaced.
    void addEntry(const QString& term, const QString& more, const QString& meaning);
    /// An option with all its names and its value; `more` is added to what its help says.
    void addOption(const QCommandLineOption& option, const QString& more = {});
    /// Lines as they are, as in a terminal.
    void addLines(const QString& lines);
    /// The section of the environment variables that all programs read.
    void addEnvironment();
    /// The last section: other pages, such as "pcdctl(1)".
    void addSeeAlso(const QStringList& pages);

    const QString& text() const { return m_text; }

private:
    QString m_text;
};
