// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayList>
#include <QString>

/// Runs a program to its end, with its standard output and standard error in these files. Returns
/// why it did not succeed, or an empty text.
///
/// Not a QProcess: it clones a child that shares this program's memory, and from then on the thread
/// sanitizer mistakes the child's state for that of this program. It would detect nothing more, and
/// would stop the program at its next thread. It does not intercept posix_spawn().
QString spawnFailure(QByteArrayList words, const QByteArray& outputPath,
                     const QByteArray& errorPath);
