// SPDX-License-Identifier: MIT
#include <apps/common/crash/PCrashReport.h>

#include <apps/common/crash/PCrashCalls.h>
#include <apps/common/crash/PCrashFacts.h>
#include <apps/common/crash/PCrashFolder.h>
#include <apps/common/crash/PCrashLog.h>
#include <apps/common/crash/PCrashWriter.h>

#include <PCore/PFaultStack.h>
#include <PCore/PPrintableText.h>

#include <execinfo.h>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <list>

namespace {

struct FaultSignal {
    int number;
    const char* name;
};
constexpr std::array faultSignals{FaultSignal{SIGSEGV, "SIGSEGV"}, FaultSignal{SIGABRT, "SIGABRT"},
                                  FaultSignal{SIGBUS, "SIGBUS"}, FaultSignal{SIGFPE, "SIGFPE"},
                                  FaultSignal{SIGILL, "SIGILL"}};

/// Then the program ends, whatever the report waits for.
constexpr unsigned longestReportSeconds = 10;

/// Everything that the handler needs. Never destroyed: a signal may arrive while the program exits.
struct CrashState {
    PCrashFacts facts;
    std::shared_ptr<PCrashLog> log = std::make_shared<PCrashLog>();
    std::list<QByteArray> sdks; ///< never changed once it is in the list
};

CrashState& crashState() {
    static CrashState& made = *new CrashState;
    return made;
}

std::atomic<const char*> sdkText{nullptr};
std::atomic_flag isReporting = ATOMIC_FLAG_INIT;

// The stack of the handler: the program's own may be what is exhausted.
alignas(16) std::array<char, 65536> handlerStack;

const char* signalName(int number) {
    for (const FaultSignal& known : faultSignals) {
        if (known.number == number)
            return known.name;
    }
    return "";
}

void writeCause(PCrashWriter& report, const siginfo_t& info) {
    char thread[16] = {}; // as long as the system's names
    ::prctl(PR_GET_NAME, thread);
    report << "Signal: " << info.si_signo << " (" << signalName(info.si_signo) << ")";
    if (info.si_code <= 0) // by a process, which may be this one
        report << ", sent by process " << info.si_pid;
    else
        report << ", code " << info.si_code << ", address " << info.si_addr;
    report << "\nThread: " << ::gettid() << " (" << thread << ") of process " << ::getpid()
           << "\nSeconds since the start: " << std::time(nullptr) - crashState().facts.started
           << "\n";
}

void writeStack(PCrashWriter& report) {
    std::array<void*, 100> stack;
    const int depth = ::backtrace(stack.data(), int(stack.size()));
    report << "\nStack:\n";
    ::backtrace_symbols_fd(stack.data(), depth, report.descriptor());
}

void writeReport(PCrashWriter& report, const siginfo_t& info) {
    report << crashState().facts.header.constData();
    const char* const sdk = sdkText;
    report << "Camera SDK: " << (sdk == nullptr ? "none loaded" : sdk) << "\n";
    writeCause(report, info);
    report << "\nNewest calls to cameras, of each thread:\n";
    PCrashCalls::writeTo(report);
    report << "\nNewest log records:\n";
    crashState().log->writeTo(report);
    // Last: what has damaged the stack ends the program here.
    writeStack(report);
}

int createReport() {
    for (const QByteArray& folder : crashState().facts.folders)
        ::mkdir(folder.constData(), 0700); // most exist
    return ::open(crashState().facts.path.constData(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC,
                  0600);
}

void leaveReport(const siginfo_t& info) {
    const int file = createReport();
    PCrashWriter terminal(STDERR_FILENO);
    terminal << ::program_invocation_short_name << ": ended by a fault, "
             << signalName(info.si_signo);
    if (file < 0) {
        terminal << "; no report could be written to " << crashState().facts.path.constData()
                 << "\n";
        return;
    }
    // First, as a report that ends early has something to say too.
    terminal << "; a report is in " << crashState().facts.path.constData()
             << " (nothing was sent)\n";
    PCrashWriter writer(file);
    writeReport(writer, info);
    ::close(file);
}

void handleSignal(int number, siginfo_t* info, void*) {
    // If a second thread fails meanwhile, it waits for the end of the process.
    while (isReporting.test_and_set())
        ::pause();
    // Another thread may hold a lock of the loader, or nobody read what is written to a pipe.
    std::signal(SIGALRM, SIG_DFL);
    ::alarm(longestReportSeconds);
    leaveReport(*info);
    // Blocked now, it arrives on return, with its usual effect: also for a core file.
    std::signal(number, SIG_DFL);
    std::raise(number);
}

/// For the main thread, until the process has ended. Threads that begin from now on have their own.
void useOwnStack() {
    PFaultStack::want();
    stack_t present{};
    if (::sigaltstack(nullptr, &present) != 0 || (present.ss_flags & SS_DISABLE) == 0)
        return; // a sanitizer's
    stack_t own{};
    own.ss_sp = handlerStack.data();
    own.ss_size = handlerStack.size();
    ::sigaltstack(&own, nullptr);
}

void watchSignals() {
    struct sigaction action {};
    action.sa_sigaction = handleSignal;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK;
    sigemptyset(&action.sa_mask);
    for (const FaultSignal& fault : faultSignals)
        sigaddset(&action.sa_mask, fault.number);
    for (const FaultSignal& fault : faultSignals) {
        struct sigaction present {};
        if (::sigaction(fault.number, nullptr, &present) == 0 && present.sa_handler == SIG_DFL)
            ::sigaction(fault.number, &action, nullptr);
    }
}

} // namespace

void PCrashReport::install(int argc, const char* const* argv, const QString& version) {
    crashState().facts = PCrashFacts::gather(argc, argv, version);
    PCrashFolder::removeOld();
    // The first call loads what the later one in the handler needs.
    std::array<void*, 4> first;
    ::backtrace(first.data(), int(first.size()));
    useOwnStack();
    watchSignals();
}

void PCrashReport::setSdk(const QString& description) {
    crashState().sdks.push_back(PPrintableText::toLine(description).toUtf8());
    sdkText = crashState().sdks.back().constData();
}

const std::shared_ptr<PLogSink>& PCrashReport::logSink() {
    static const std::shared_ptr<PLogSink>& sink = *new std::shared_ptr<PLogSink>(crashState().log);
    return sink;
}
