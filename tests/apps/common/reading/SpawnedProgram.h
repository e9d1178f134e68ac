// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayList>
#include <QString>

/// Runs a program to its end, with its standard output and standard error in these files. Returns
/// why it did not succeed, or an empty text.
///
/// Not a QProcess: that clones a child which shares this program's memory, and the thread sanitizer
/// takes what it notes down for the child for this program's own state from then on. It would find
/// nothing more, and would stop the program at its next thread. posix_spawn() is out of its sight.
QString spawnFailure(QByteArrayList words, const QByteArray& outputPath,
                     const QByteArray& errorPath);
