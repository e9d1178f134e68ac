// SPDX-License-Identifier: MIT
#include <reliability/Watchdog.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <unistd.h>

// Defined by a sanitizer's run-time library, if there is one.
extern "C" void __sanitizer_set_death_callback(void (*)()) __attribute__((weak));

namespace {

// For handlers of signals, which may read nothing else.
std::array<char, 1024> crashText;

void printCrashText() {
    const std::size_t length = strnlen(crashText.data(), crashText.size());
    if (length > 0 && ::write(STDERR_FILENO, crashText.data(), length) < 0)
        return; // there is nothing else to be done
}

void onCrash(int signal) {
    printCrashText();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

} // namespace

Watchdog::Watchdog(std::chrono::seconds limit)
    : m_limit(limit)
    , m_since(std::chrono::steady_clock::now())
    , m_thread([this] { run(); }) {
    if (__sanitizer_set_death_callback != nullptr) {
        __sanitizer_set_death_callback(printCrashText);
        return;
    }
    for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT})
        std::signal(signal, onCrash);
}

Watchdog::~Watchdog() {
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
        m_changed.notify_all();
    }
    m_thread.join();
    crashText[0] = '\0';
}

void Watchdog::watch(const std::string& what) {
    const std::lock_guard lock(m_mutex);
    m_what = what;
    m_since = std::chrono::steady_clock::now();
    const std::string text = what.empty() ? what : "\nDuring: " + what + '\n';
    std::snprintf(crashText.data(), crashText.size(), "%s", text.c_str());
}

void Watchdog::run() {
    std::unique_lock lock(m_mutex);
    while (!m_changed.wait_for(lock, std::chrono::seconds(1), [this] { return m_stopping; })) {
        if (m_what.empty() || std::chrono::steady_clock::now() - m_since < m_limit)
            continue;
        std::fprintf(stderr, "\nHangs for more than %lld s: %s\n",
                     static_cast<long long>(m_limit.count()), m_what.c_str());
        std::abort();
    }
}
