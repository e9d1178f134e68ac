// SPDX-License-Identifier: MIT
#include <apps/common/reading/SpawnedProgram.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

QString spawnFailure(QByteArrayList words, const QByteArray& outputPath,
                     const QByteArray& errorPath) {
    std::vector<char*> arguments;
    for (QByteArray& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    constexpr int flags = O_WRONLY | O_CREAT | O_TRUNC;
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, outputPath.constData(), flags, 0600);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errorPath.constData(), flags, 0600);
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
    return u"ended with wait status %1"_qs.arg(status);
}
