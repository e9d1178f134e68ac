// SPDX-License-Identifier: MIT
// The thread of the cameras and the interpreter's lock, without a camera.
#include <python/host/PPythonHost.h>

#include <python/host/PPythonError.h>
#include <python/host/PPythonProcess.h>

#include <support/WaitUntil.h>

#include <QMetaObject>

#pragma push_macro("slots")
#undef slots
#include <pybind11/embed.h>
#pragma pop_macro("slots")

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <optional>
#include <string>
#include <thread>

namespace {

/// What a call throws; empty if it does not.
template <typename Call>
std::string thrownBy(Call call) {
    try {
        call();
    } catch (const PPythonError& error) {
        return error.what();
    }
    return {};
}

class HostOfPython : public testing::Test {
protected:
    static void SetUpTestSuite() {
        interpreter.emplace();
        PPythonProcess::note(); // as when the module is imported
    }
    static void TearDownTestSuite() {
        PPythonHost::shutDown();
        interpreter.reset();
    }

    static inline std::optional<py::scoped_interpreter> interpreter;
    PPythonHost& host = PPythonHost::instance();
};

TEST_F(HostOfPython, while_it_waits_other_threads_have_the_interpreter) {
    std::atomic<bool> hasRun{false};
    std::thread other([&] {
        const py::gil_scoped_acquire acquire; // needs that this thread does not keep it
        hasRun = true;
    });
    EXPECT_TRUE(host.waitFor([&] { return hasRun.load(); }, longestWait()));
    EXPECT_NE(PyGILState_Check(), 0) << "afterwards this thread has it again";
    other.join();
}

TEST_F(HostOfPython, the_predicate_is_called_with_the_interpreters_lock) {
    int calls = 0;
    EXPECT_TRUE(host.waitFor(
        [&] {
            EXPECT_NE(PyGILState_Check(), 0);
            return ++calls > 2;
        },
        longestWait()));
}

TEST_F(HostOfPython, what_other_threads_post_is_done_while_it_waits_and_wakes_it) {
    bool isDone = false;
    std::thread other([&] {
        QMetaObject::invokeMethod(&host, [&] { isDone = true; }); // to the thread of the host
    });
    EXPECT_TRUE(host.waitFor([&] { return isDone; }, longestWait()));
    other.join();
}

TEST_F(HostOfPython, a_wait_ends_without_success_when_its_time_is_over) {
    EXPECT_FALSE(host.waitFor([] { return false; }, std::chrono::milliseconds(1)));
}

TEST_F(HostOfPython, an_error_in_the_predicate_ends_the_wait_and_later_waits_work) {
    EXPECT_THROW(host.waitFor(
                     []() -> bool {
                         py::exec("1 / 0");
                         return false;
                     },
                     longestWait()),
                 py::error_already_set);
    EXPECT_NE(PyGILState_Check(), 0);
    EXPECT_TRUE(host.waitFor([] { return true; }, std::nullopt));
}

TEST_F(HostOfPython, a_signals_handler_that_raises_ends_the_wait) {
    py::exec("import signal\n"
             "def handle(*_): raise KeyError('mine')\n"
             "before = signal.signal(signal.SIGUSR1, handle)\n");
    try {
        host.waitFor([] { return raise(SIGUSR1) != 0; }, longestWait());
        ADD_FAILURE() << "it did not raise";
    } catch (const py::error_already_set& error) {
        EXPECT_TRUE(error.matches(PyExc_KeyError));
    }
    py::exec("signal.signal(signal.SIGUSR1, before)");
}

TEST_F(HostOfPython, another_thread_is_refused) {
    std::string said;
    bool isOwn = true;
    {
        const py::gil_scoped_release release;
        std::thread([&] {
            isOwn = PPythonHost::isOwnThread();
            said = thrownBy([] { PPythonHost::instance(); });
        }).join();
    }
    EXPECT_FALSE(isOwn);
    EXPECT_TRUE(PPythonHost::isOwnThread());
    EXPECT_NE(said.find("call pcd from that thread"), std::string::npos) << said;
}

TEST_F(HostOfPython, a_forked_process_is_refused) {
    const pid_t child = fork();
    if (child == 0) {
        const std::string said = thrownBy([] { PPythonHost::instance(); });
        _exit(said.find("forked") != std::string::npos ? 7 : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 7);
    EXPECT_EQ(thrownBy([] { PPythonHost::instance(); }), "");
}

TEST_F(HostOfPython, its_sdk_is_chosen_once) {
    EXPECT_NE(thrownBy([&] { host.loadSdk(u"/nowhere.so"_qs); }).find("/nowhere.so"),
              std::string::npos);
    host.loadSdk(u"sim"_qs);
    host.loadSdk(u"sim"_qs);
    EXPECT_TRUE(host.cameras().sdk().isSimulated());
    EXPECT_NE(thrownBy([&] { host.loadSdk(u"auto"_qs); }).find("is another one"),
              std::string::npos);
}

} // namespace
