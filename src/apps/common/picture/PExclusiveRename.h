// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

/// Gives a whole file its name, and never the name of something that is there: a file, a folder, or
/// a link that leads nowhere. Both names are in one folder. Any thread.
class PExclusiveRename {
public:
    /// One way to do it. Answers 0, or the reason as errno has it; then `from` has kept its name.
    using Step = int (*)(const QByteArray& from, const QByteArray& to);

    /// In one step, which some file systems do not have.
    static int byRename(const QByteArray& from, const QByteArray& to);
    /// By a second name, then without the first; some file systems have no second names.
    static int byLink(const QByteArray& from, const QByteArray& to);
    /// Over an empty file made under the name before. Any file system; a program that is killed in
    /// between leaves the empty file.
    static int byPlaceholder(const QByteArray& from, const QByteArray& to);

    /// All of them, the best first.
    static std::vector<Step> allSteps() { return {byRename, byLink, byPlaceholder}; }

    /// Takes the first of the steps that the file system has. Answers 0, or the reason as errno has
    /// it.
    static int name(const QString& from, const QString& to,
                    const std::vector<Step>& steps = allSteps());
};
