// SPDX-License-Identifier: MIT
// The Python module in a program of Qt: its application object, its thread, its event loop.
#include <python/host/PPybind.h>

#include <QCoreApplication>
#include <QTimer>

#pragma push_macro("slots")
#undef slots
#include <pybind11/embed.h>
#pragma pop_macro("slots")

#include <gtest/gtest.h>

#include <optional>
#include <thread>

namespace {

constexpr std::chrono::seconds longest(60);

const char* const preparation = R"(
import ctypes
import pcd
def scene():
    return {"cameras": [{"id": "a", "model": "Small", "serial": "A", "exposure": {"auto": False},
                         "resolutions": [{"width": 64, "height": 48, "fps": 100}],
                         "source": {"kind": "patches"}}]}
simulator = pcd.simulate(scene())
pcd.cameras()
)";

/// One interpreter, as extension modules cannot be loaded twice.
class QtHost : public testing::Test {
protected:
    static void SetUpTestSuite() {
        interpreter.emplace();
        application = QCoreApplication::instance();
        py::exec(preparation, py::globals());
    }
    static void TearDownTestSuite() { interpreter.reset(); }

    /// Runs the program's event loop as a program does: without the interpreter's lock.
    static void runLoop() {
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, application, [] { QCoreApplication::exit(1); });
        timer.start(longest);
        const py::gil_scoped_release release;
        EXPECT_EQ(QCoreApplication::exec(), 0) << "it took too long";
    }
    static QString read(const char* expression) {
        return py::str(py::eval(expression, py::globals())).cast<QString>();
    }

    static inline std::optional<py::scoped_interpreter> interpreter;
    static inline QCoreApplication* application = nullptr;
};

TEST_F(QtHost, the_programs_application_object_is_used) {
    py::exec("with pcd.open() as camera: shape = camera.snap().array.shape", py::globals());
    EXPECT_EQ(read("shape"), u"(48, 64, 3)"_qs);
    EXPECT_EQ(QCoreApplication::instance(), application);
}

TEST_F(QtHost, its_event_loop_calls_functions_for_cameras_that_go) {
    py::globals()["quit"] = py::cpp_function([] { QCoreApplication::quit(); });
    py::exec(R"(
seen = []
subscription = pcd.on_unplug(lambda camera: (seen.append(camera.id), quit()))
ctypes.CDLL(pcd._pcd.sdk_path()).ToupcamSim_unplug(b"a")  # the list of cameras is not read yet
assert not seen
)",
             py::globals());
    runLoop();
    py::exec("subscription.cancel()", py::globals());
    EXPECT_EQ(read("seen"), u"['Small-A']"_qs);
}

TEST_F(QtHost, a_function_that_the_event_loop_calls_may_wait_for_frames_and_cameras) {
    py::exec("simulator.load(scene())", py::globals());
    QTimer::singleShot(0, application, [] {
        const py::gil_scoped_acquire acquire;
        py::exec(R"(
with pcd.open() as camera:
    numbers = [frame.index for frame in camera.stream(5)]
    simulator.unplug("a")
simulator.plug("a")
with pcd.open() as camera:
    numbers.append(camera.snap().still)
)",
                 py::globals());
        QCoreApplication::quit();
    });
    runLoop();
    EXPECT_EQ(read("numbers"), u"[0, 1, 2, 3, 4, True]"_qs);
}

TEST_F(QtHost, another_thread_is_told_where_the_cameras_are) {
    QString said;
    {
        const py::gil_scoped_release release;
        std::thread([&said] {
            const py::gil_scoped_acquire acquire;
            try {
                py::exec("pcd.cameras()", py::globals());
            } catch (const py::error_already_set& error) {
                said = QString::fromUtf8(error.what());
            }
        }).join();
    }
    EXPECT_TRUE(said.startsWith(u"ThreadError"_qs)) << said.toStdString();
}

} // namespace
