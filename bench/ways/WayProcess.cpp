// SPDX-License-Identifier: MIT
#include <ways/WayProcess.h>

#include <stub/StubRemote.h>

#include <array>
#include <csignal>
#include <ctime>
#include <fstream>
#include <stdexcept>

#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int connectionInProcess = 3; // its first file after the standard ones

std::vector<char*> toPointers(std::vector<std::string>& words) {
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    return pointers;
}

/// The environment of this process with these variables. Of two with one name the first counts.
std::vector<std::string> makeEnvironment(const Way& way, WayProcess::Memory memory) {
    std::vector<std::string> variables = way.variables;
    variables.push_back(std::string(StubRemote::variable) + '=' +
                        std::to_string(connectionInProcess));
    variables.push_back("TOUPCAM_LIBRARY=" +
                        (WayFolders::bin() / "../lib/pcd/stub" / PCD_STUB_SDK).string());
    if (memory == WayProcess::Memory::Keeps) {
        // The C library takes all from one heap, which never shrinks.
        for (const char* const setting :
             {"MALLOC_MMAP_MAX_=0", "MALLOC_ARENA_MAX=1", "MALLOC_TRIM_THRESHOLD_=17179869184"})
            variables.emplace_back(setting);
    }
    for (char** one = environ; *one != nullptr; ++one)
        variables.emplace_back(*one);
    return variables;
}

/// The command, whose files go into the folder.
std::vector<std::string> makeCommand(const Way& way,
                                     const std::optional<WayFolders::Scratch>& folder) {
    std::vector<std::string> words = way.command;
    const std::string placeholder = WayFolders::placeholder;
    for (std::string& word : words) {
        if (folder && word.compare(0, placeholder.size(), placeholder) == 0)
            word = (folder->path() / word.substr(placeholder.size())).string();
    }
    return words;
}

/// Returns 0 if it could not be started.
pid_t spawn(std::vector<std::string> command, std::vector<std::string> environment, int output,
            int connection) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, connection, connectionInProcess);
    pid_t process = 0;
    const int error = posix_spawn(&process, command.front().c_str(), &actions, nullptr,
                                  toPointers(command).data(), toPointers(environment).data());
    posix_spawn_file_actions_destroy(&actions);
    return error == 0 ? process : 0;
}

} // namespace

WayProcess::WayProcess(const Way& way, Memory memory) {
    if (way.arrival == Way::Arrival::Rests)
        m_folder.emplace();
    std::array<int, 2> output{};
    std::array<int, 2> connection{};
    if (pipe2(output.data(), O_CLOEXEC) != 0 ||
        socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, connection.data()) != 0)
        throw std::runtime_error("no pipe to a program could be made");
    m_output = output[0];
    m_connection = connection[0];
    m_id =
        spawn(makeCommand(way, m_folder), makeEnvironment(way, memory), output[1], connection[1]);
    ::close(output[1]); // so that reading ends with the process
    ::close(connection[1]);
    if (m_id == 0)
        throw std::runtime_error(way.command.front() + " could not be started");
}

WayProcess::~WayProcess() {
    kill(m_id, SIGKILL);
    waitpid(m_id, nullptr, 0);
    ::close(m_connection);
    ::close(m_output);
}

double WayProcess::cpuMs() const {
    clockid_t clock{};
    timespec time{};
    if (clock_getcpuclockid(m_id, &clock) != 0 || clock_gettime(clock, &time) != 0)
        throw std::runtime_error("a program has ended");
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

bool WayProcess::isRunning() const {
    siginfo_t ended{};
    // The destructor collects it.
    return ::waitid(P_PID, id_t(m_id), &ended, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           ended.si_pid == 0;
}

bool WayProcess::hasWork() const {
    const std::string tasks = "/proc/" + std::to_string(m_id) + "/task";
    for (const auto& entry : std::filesystem::directory_iterator(tasks)) {
        std::ifstream file(entry.path() / "stat");
        std::string line;
        std::getline(file, line);
        const std::size_t state = line.rfind(')') + 2; // after the name in brackets
        if (state < line.size() && (line[state] == 'R' || line[state] == 'D'))
            return true;
    }
    return false;
}

void WayProcess::releaseFiles() const {
    if (m_folder)
        m_folder->release();
}
