// SPDX-License-Identifier: MIT
#include <apps/pcdview/hang/PHangNotice.h>

#include <apps/pcdview/hang/PHangMessage.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <vector>

#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// Starts a program with this standard input. Returns the process, or 0. Not with QProcess, which
/// needs the event loop of its thread.
pid_t spawnWithInput(QByteArrayList words, int input) {
    std::vector<char*> arguments;
    for (QByteArray& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    // The program is a link with a name of its own: it is shown by the name of this one.
    arguments.front() = ::program_invocation_short_name;
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, input, STDIN_FILENO);
    // Also those that libraries have opened without O_CLOEXEC, such as a camera.
    posix_spawn_file_actions_addclosefrom_np(&files, STDERR_FILENO + 1);
    pid_t process = 0;
    if (::posix_spawn(&process, words.first().constData(), &files, nullptr, arguments.data(),
                      environ) != 0)
        process = 0;
    posix_spawn_file_actions_destroy(&files);
    return process;
}

} // namespace

PHangNotice::PHangNotice(const QStringList& command) {
    for (const QString& word : command)
        m_command.append(word.toLocal8Bit());
}

PHangNotice::~PHangNotice() {
    hide();
}

void PHangNotice::show(const PCallWatchdog::Call& call) {
    const std::lock_guard lock(m_mutex);
    if (m_process != 0 && !isRunning())
        return forget();
    if (m_process == 0)
        start();
    if (m_process == 0)
        return;
    const QByteArray message = PHangMessage::write(call);
    // The process may end now, or hang and not read: neither may affect the viewer.
    ::send(m_socket, message.constData(), std::size_t(message.size()), MSG_NOSIGNAL | MSG_DONTWAIT);
}

void PHangNotice::hide() {
    const std::lock_guard lock(m_mutex);
    finish();
}

void PHangNotice::retire() {
    const std::lock_guard lock(m_mutex);
    finish();
    m_command.clear();
}

bool PHangNotice::isShown() const {
    const std::lock_guard lock(m_mutex);
    return m_process != 0;
}

/// Nothing of it remains in the viewer if this fails.
void PHangNotice::start() {
    std::array<int, 2> ends{};
    // Its end is read there when this one is closed, by whatever ends the viewer.
    if (m_command.isEmpty() ||
        ::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0)
        return;
    m_process = spawnWithInput(m_command, ends[1]);
    ::close(ends[1]);
    if (m_process != 0)
        m_socket = ends[0];
    else
        ::close(ends[0]);
}

void PHangNotice::finish() {
    if (m_process == 0)
        return;
    if (isRunning()) {
        ::kill(m_process, SIGKILL); // it has nothing to lose, and may be hanging itself
        while (::waitpid(m_process, nullptr, 0) < 0 && errno == EINTR)
            continue;
    }
    forget();
}

/// If not, it leaves no zombie.
bool PHangNotice::isRunning() const {
    return ::waitpid(m_process, nullptr, WNOHANG) == 0;
}

void PHangNotice::forget() {
    ::close(m_socket);
    m_socket = -1;
    m_process = 0;
}
