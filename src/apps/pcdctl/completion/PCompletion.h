// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/completion/PCandidate.h>

#include <QStringList>

/// Completes the program's own command line, for the completion scripts of shells. The main thread.
class PCompletion {
public:
    /// The word that the scripts pass to the program, before those of the line.
    static QString keyword() { return u"__complete"_qs; }
    /// Prints what the last of these words may become, one candidate a line: the whole word, and
    /// after a tabulator what it stands for. A candidate that ends in "=" is not complete yet. The
    /// line ":files" says that names of files are possible too. Prints no errors, whatever happens:
    /// they would land in the line that the user types.
    static void print(const QStringList& words);
};
