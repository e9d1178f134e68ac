// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

/// Gives a complete file or folder its final name without ever replacing anything: a file, a
/// folder, or a dangling link. Both names are in one folder. Any thread.
class PExclusiveRename {
public:
    /// One way to rename. Returns 0, or the errno of the failure; then `from` keeps its name.
    using Step = int (*)(const QByteArray& from, const QByteArray& to);

    /// Atomically, which some file systems do not support.
    static int byRename(const QByteArray& from, const QByteArray& to);
    /// By adding a hard link and removing the first name; some file systems have no hard links.
    static int byLink(const QByteArray& from, const QByteArray& to);
    /// By replacing an empty file that reserves the name. Any file system; if the program is killed
    /// in between, the empty file remains.
    static int byPlaceholder(const QByteArray& from, const QByteArray& to);
    /// The same for a folder, which replaces an empty one.
    static int byEmptyFolder(const QByteArray& from, const QByteArray& to);

    /// All ways for a file, the best first.
    static std::vector<Step> allSteps() { return {byRename, byLink, byPlaceholder}; }
    /// All ways for a folder, the best first.
    static std::vector<Step> folderSteps() { return {byRename, byEmptyFolder}; }

    /// Uses the first way that the file system supports. Returns 0, or the errno of the failure.
    static int name(const QString& from, const QString& to,
                    const std::vector<Step>& steps = allSteps());
};
