// SPDX-License-Identifier: MIT
#include "XmlLint.h"

#include <support/FolderTest.h>

#include <QByteArrayList>
#include <QFile>
#include <QTemporaryDir>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

/// Runs a program with its standard error in a file. Returns why it did not succeed, or an empty
/// text.
///
/// Not a QProcess: that clones a child which shares this program's memory, and the thread sanitizer
/// takes what it notes down for the child for this program's own state from then on. It would find
/// nothing more, and would stop the program at its next thread. posix_spawn() is out of its sight.
QString runFailure(QByteArrayList words, const QByteArray& errorPath) {
    std::vector<char*> arguments;
    for (QByteArray& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errorPath.constData(),
                                     O_WRONLY | O_CREAT | O_TRUNC, 0600);
    pid_t child = 0;
    const int error =
        posix_spawnp(&child, arguments.front(), &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        return QString::fromLocal8Bit(std::strerror(error));
    int status = 0;
    if (waitpid(child, &status, 0) != child)
        return QString::fromLocal8Bit(std::strerror(errno));
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0)
        return {};
    return QStringLiteral("ended with wait status %1").arg(status);
}

} // namespace

QString xmlLintComplaints(const QByteArray& xml, const QString& schema) {
    const QTemporaryDir folder;
    const QString document = folder.filePath(QStringLiteral("document.xml"));
    const QString complaints = folder.filePath(QStringLiteral("complaints"));
    writeFile(document, xml);
    const QString failure = runFailure({"xmllint", "--nonet", "--noout", "--schema",
                                        QFile::encodeName(schema), QFile::encodeName(document)},
                                       QFile::encodeName(complaints));
    if (failure.isEmpty())
        return {};
    return QStringLiteral("xmllint %1: %2").arg(failure, QString::fromUtf8(readFile(complaints)));
}
