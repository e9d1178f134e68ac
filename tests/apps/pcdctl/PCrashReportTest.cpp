// SPDX-License-Identifier: MIT
#include <apps/common/crash/PCrashReport.h>

#include <apps/pcdctl/CtlProcess.h>
#include <apps/pcdctl/CtlScene.h>
#include <apps/pcdctl/ExhaustedStack.h>

#include <PCore/PThread.h>
#include <PCore/call/PNamedCall.h>
#include <PCore/work/PWorkQueue.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <QDir>
#include <QRegularExpression>

#include <csignal>
#include <future>
#include <thread>

#include <sys/resource.h>
#include <unistd.h>

namespace {

void leaveNoCoreFile() {
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
}

/// pcdctl, whose state is in a folder of the test.
class CrashReport : public FolderTest {
protected:
    QStringList reports() const {
        const QDir folder(path(u"state/pcd/crashes"_qs));
        QStringList paths;
        for (const QString& name : folder.entryList(QDir::Files))
            paths.append(folder.filePath(name));
        return paths;
    }
    void prepare(CtlProcess& process) const {
        process.with(u"XDG_STATE_HOME"_qs, path(u"state"_qs)).with(leaveNoCoreFile);
    }
    /// Waits for the end by this signal; returns the only report, which the error stream names.
    QByteArray expectReport(CtlProcess& process, int signal) const {
        EXPECT_TRUE(process.finish());
        EXPECT_EQ(process.endingSignal(), signal);
        const QStringList found = reports();
        EXPECT_EQ(found.size(), 1);
        const QString report = found.value(0);
        const QByteArray errors = process.errors();
        EXPECT_TRUE(
            errors.contains("; a report is in " + report.toUtf8() + " (nothing was sent)\n"))
            << errors.toStdString();
        return readFile(report);
    }
};

/// A signal that another process sends.
struct SentRow {
    const char* name;
    int signal;
};

class CrashReportOfASignal : public CrashReport, public WithRow<SentRow> {};

ROW_TEST(CrashReportOfASignal, is_left_and_the_signal_ends_the_program) {
    const QString journal = path(u"journal"_qs);
    const QString scene = CtlScene().addCamera().writeTo(path(u"scene.json"_qs));
    CtlProcess process({u"stream"_qs, u"--sdk=sim"_qs, u"--scene"_qs, scene});
    prepare(process);
    process.with(u"TOUPCAM_SIM_JOURNAL"_qs, journal).start();
    for (int i = 0; i < 6000 && !readFile(journal).contains("Toupcam_StartPushMode"); ++i)
        usleep(10'000);
    process.sendSignal(GetParam().signal);
    const QByteArray report = expectReport(process, GetParam().signal);
    EXPECT_TRUE(report.contains(QByteArray(" (") + GetParam().name + "), sent by process "))
        << report.toStdString();
    EXPECT_TRUE(report.contains("stream --sdk=sim --scene "));
    EXPECT_TRUE(report.contains("libtoupcam.so, version ")) << report.toStdString();
    EXPECT_TRUE(report.contains(", simulated cameras\n"));
    EXPECT_TRUE(report.contains("\nStack:\n"));
    EXPECT_TRUE(report.contains("libc.so.6(")) << report.toStdString();
}

ROWS(Signals, CrashReportOfASignal, SentRow{"SIGSEGV", SIGSEGV}, SentRow{"SIGABRT", SIGABRT},
     SentRow{"SIGBUS", SIGBUS}, SentRow{"SIGFPE", SIGFPE}, SentRow{"SIGILL", SIGILL});

/// A fault in the camera's library.
struct FaultRow {
    const char* name;
    const char* fault;
    int signal;
    const char* cause;
};

class CrashReportOfAFault : public CrashReport, public WithRow<FaultRow> {};

ROW_TEST(CrashReportOfAFault, names_the_library_in_the_stack) {
    CtlProcess process({u"list"_qs, u"--sdk"_qs, QStringLiteral(FAULTY_CAMERA_SDK)});
    prepare(process);
    process.with(u"FAULTY_CAMERA_SDK"_qs, QString::fromLatin1(GetParam().fault));
    const QByteArray report = expectReport(process, GetParam().signal);
    EXPECT_TRUE(report.contains(GetParam().cause)) << report.toStdString();
    const QByteArray stack = report.mid(report.indexOf("\nStack:\n"));
    EXPECT_TRUE(stack.contains("libfaulty_camera_sdk.so(")) << report.toStdString();
    static const QRegularExpression calls(u":\n  Toupcam_HotPlug\\(0x[0-9a-f]+, 0x[0-9a-f]+\\)\n"
                                          "  Toupcam_EnumV2\\(0x[0-9a-f]+\\), in progress\n\n"_qs);
    EXPECT_TRUE(calls.match(QString::fromUtf8(report)).hasMatch()) << report.toStdString();
}

ROWS(Faults, CrashReportOfAFault,
     FaultRow{"a_null_pointer", "pointer", SIGSEGV, "code 1, address 0x0\n"},
     FaultRow{"a_null_pointer_on_another_thread", "thread", SIGSEGV, "code 1, address 0x0\n"},
     FaultRow{"an_exhausted_stack", "stack", SIGSEGV, "(SIGSEGV), code "},
     FaultRow{"an_exhausted_stack_of_another_thread", "thread_stack", SIGSEGV, "(SIGSEGV), code "},
     FaultRow{"an_abort", "abort", SIGABRT, "(SIGABRT), sent by process "});

#if defined(__x86_64__)
TEST_F(CrashReport, has_everything_else_if_the_stack_cannot_be_read) {
    CtlProcess process({u"list"_qs, u"--sdk"_qs, QStringLiteral(FAULTY_CAMERA_SDK)});
    prepare(process);
    process.with(u"FAULTY_CAMERA_SDK"_qs, u"lost"_qs);
    const QByteArray report = expectReport(process, SIGSEGV);
    EXPECT_TRUE(report.contains("\nSignal: 4 (SIGILL), code ")) << report.toStdString();
    EXPECT_TRUE(report.contains("\nNewest log records:\n")) << report.toStdString();
}
#endif

TEST_F(CrashReport, has_the_newest_log_records) {
    CtlProcess process({u"stream"_qs, u"--sdk=sim"_qs, u"--log-level=info"_qs, u"--scene"_qs,
                        CtlScene().addCamera().writeTo(path(u"scene.json"_qs))});
    prepare(process);
    ASSERT_TRUE(process.start().waitForErrors(" info PTDevice: "));
    process.sendSignal(SIGSEGV);
    const QByteArray report = expectReport(process, SIGSEGV);
    const QByteArray records = report.mid(report.indexOf("\nNewest log records:\n"));
    EXPECT_TRUE(records.contains(" info PTDevice: ")) << report.toStdString();
}

constexpr PNamedCall<int(int)> crashingSet("Camera_set");

/// Ends this process by a fault while another thread is in a call.
void crashAfterCalls(const QString& state) {
    qputenv("XDG_STATE_HOME", QFile::encodeName(state));
    leaveNoCoreFile();
    const char* const arguments[] = {"crashing"};
    PCrashReport::install(1, arguments, u"1"_qs);
    std::promise<void> began;
    std::thread other([&] {
        for (const int value : {1, 2}) {
            const auto inProgress = crashingSet.begin(value);
        }
        const auto inProgress = crashingSet.begin(3);
        began.set_value();
        ::pause();
    });
    began.get_future().wait();
    for (const int value : {4, 5}) {
        const auto inProgress = crashingSet.begin(value);
    }
    const auto inProgress = crashingSet.begin(6);
    std::raise(SIGSEGV);
}

TEST_F(CrashReport, has_the_calls_of_all_threads_in_their_order) {
    EXPECT_EXIT(crashAfterCalls(path(u"state"_qs)), testing::KilledBySignal(SIGSEGV),
                "a report is in ");
    ASSERT_EQ(reports().size(), 1);
    const QByteArray report = readFile(reports().first());
    EXPECT_TRUE(report.contains(", in which the fault was:\n"
                                "  Camera_set(4)\n"
                                "  Camera_set(5)\n"
                                "  Camera_set(6), in progress\n"))
        << report.toStdString();
    EXPECT_TRUE(report.contains(":\n"
                                "  Camera_set(1)\n"
                                "  Camera_set(2)\n"
                                "  Camera_set(3), in progress\n"))
        << report.toStdString();
}

/// Ends this process by exhausting the stack of a thread that `start` makes.
void exhaustStack(void (*start)(), const QString& state) {
    qputenv("XDG_STATE_HOME", QFile::encodeName(state));
    leaveNoCoreFile();
    const char* const arguments[] = {"crashing"};
    PCrashReport::install(1, arguments, u"1"_qs);
    start();
    for (;;)
        ::pause();
}

void recurseInAQueue() {
    static PWorkQueue queue(1, 1);
    queue.push(1, [] {
        recurseForEver(0);
        return PStatus(PStatus::Ok);
    });
}

void recurseInAThread() {
    class Recursion : public PThread {
        void run() override { recurseForEver(0); }
    };
    static Recursion thread;
    thread.startThread();
}

void recurseInACaller() {
    std::thread([] {
        { const auto inProgress = crashingSet.begin(1); }
        recurseForEver(0);
    }).detach();
}

/// What starts a thread of the program.
struct ThreadRow {
    const char* name;
    void (*start)();
};

class CrashReportOfAThread : public CrashReport, public WithRow<ThreadRow> {};

ROW_TEST(CrashReportOfAThread, is_left_if_its_stack_is_exhausted) {
    EXPECT_EXIT(exhaustStack(GetParam().start, path(u"state"_qs)), testing::KilledBySignal(SIGSEGV),
                "a report is in ");
    ASSERT_EQ(reports().size(), 1);
    const QByteArray report = readFile(reports().first());
    EXPECT_TRUE(report.contains("(SIGSEGV), code ")) << report.toStdString();
    EXPECT_TRUE(report.contains("\nStack:\n")) << report.toStdString();
}

ROWS(Threads, CrashReportOfAThread, ThreadRow{"of_a_work_queue", recurseInAQueue},
     ThreadRow{"of_the_framework", recurseInAThread},
     ThreadRow{"that_calls_a_camera", recurseInACaller});

TEST_F(CrashReport, of_a_run_without_a_fault_does_not_exist) {
    CtlProcess process({listWord, u"--sdk=sim"_qs});
    prepare(process);
    ASSERT_TRUE(process.finish());
    EXPECT_EQ(process.exitCode(), 0);
    EXPECT_FALSE(QDir(path(u"state"_qs)).exists());
}

TEST_F(CrashReport, of_a_run_that_the_user_ends_does_not_exist) {
    CtlProcess process({u"monitor"_qs, u"--sdk=sim"_qs});
    prepare(process);
    ASSERT_TRUE(process.start().waitForOutput("\n"));
    process.sendSignal(SIGTERM);
    ASSERT_TRUE(process.finish());
    EXPECT_FALSE(QDir(path(u"state"_qs)).exists());
}

TEST_F(CrashReport, that_cannot_be_written_is_said_to_be_missing) {
    writeFile(path(u"state"_qs), "a file where the folder should be");
    CtlProcess process({u"list"_qs, u"--sdk"_qs, QStringLiteral(FAULTY_CAMERA_SDK)});
    prepare(process);
    process.with(u"FAULTY_CAMERA_SDK"_qs, u"pointer"_qs);
    ASSERT_TRUE(process.finish());
    EXPECT_EQ(process.endingSignal(), SIGSEGV);
    const QByteArray errors = process.errors();
    EXPECT_TRUE(errors.contains("no report could be written to ")) << errors.toStdString();
}

TEST_F(CrashReport, older_than_the_newest_ten_is_removed_at_the_next_start) {
    const QDir folder(path(u"state/pcd/crashes"_qs));
    ASSERT_TRUE(folder.mkpath(u"."_qs));
    for (int i = 0; i < 12; ++i)
        writeFile(folder.filePath(u"%1.txt"_qs.arg(i)), "a report");
    CtlProcess process({listWord, u"--sdk=sim"_qs});
    prepare(process);
    ASSERT_TRUE(process.finish());
    EXPECT_EQ(reports().size(), 10);
}

} // namespace
