// SPDX-License-Identifier: MIT
#pragma once

#include <support/FolderTest.h>

#include <QDir>

/// The words with which a process was started; none if it has ended, also if its parent does not
/// know that yet.
inline QList<QByteArray> wordsOfProcess(qint64 process) {
    QList<QByteArray> words = readFile(u"/proc/%1/cmdline"_qs.arg(process)).split('\0');
    words.removeAll(QByteArray());
    return words;
}

/// True while a process runs.
inline bool isProcessRunning(qint64 process) {
    return !wordsOfProcess(process).isEmpty();
}
