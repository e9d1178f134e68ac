// SPDX-License-Identifier: MIT
#pragma once

#include <python/host/PPybind.h>

#include <apps/common/camera/PCameraHost.h>
#include <apps/common/camera/PCameraIdentity.h>

#include <QObject>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <vector>

class PPythonSession;
class QCoreApplication;

/// The cameras of a Python process. The first thread that uses them owns them: everything runs on
/// that thread, and its event loop runs while a function of the module waits. All functions hold
/// the interpreter's lock when they are called, and release it while they wait; they throw
/// PPythonError on any other thread and in a forked process, unless they say otherwise.
class PPythonHost : public QObject {
public:
    /// The one of this process, which the first call makes, with the application object if there is
    /// none.
    static PPythonHost& instance();
    /// The same, with its cameras; the first call finds them, with the SDK `auto` unless loadSdk()
    /// was called.
    static PPythonHost& withCameras();
    /// True if this is the thread of the cameras. Any thread.
    static bool isOwnThread();
    /// Closes all cameras at the end of the process, if this is their thread; once. Any thread.
    static void shutDown() noexcept;

    /// Loads the SDK: "auto", "sim" or the path of a library. Fails if another one was loaded
    /// before.
    /// @internal See PCameraSdk::load().
    void loadSdk(const QString& choice);
    /// Loads the plugins of these folders and of the usual ones, and finds the cameras; once.
    void findCameras(const QStringList& pluginPaths);
    /// The cameras that are plugged in now.
    std::vector<PCameraIdentity> present();
    /// Compares the list of cameras with those that are there now.
    void rescan();
    /// True once the plugins were loaded.
    bool hasCameras() const { return m_hasCameras; }
    /// Sentences for the user about plugins and SDK, each once.
    QStringList takeNotices();

    PCameraHost& cameras() { return *m_cameras; }
    PDeviceManager& manager() { return m_cameras->manager(); }

    /// Does what waits for the thread of the cameras, and returns: for loops of your own.
    /// @internal Throws what a handler of signals raises.
    void handleEvents();
    /// Waits until the predicate is true, while cameras may come and go; False if it is not within
    /// the timeout, in seconds.
    /// @internal The predicate is called with the interpreter's lock. Throws what a handler of
    /// signals raises, as for Ctrl-C.
    bool waitFor(const std::function<bool()>& predicate,
                 std::optional<std::chrono::milliseconds> atMost);

    /// Calls it with True and a camera's identity for each camera that comes, and with False for
    /// one that is gone, from now on. Its exceptions go to sys.unraisablehook, but
    /// KeyboardInterrupt to who waits.
    void setListener(py::object listener);

    /// The sessions, to be closed by shutDown(). Each reports itself; removing never throws.
    void addSession(PPythonSession* session) { m_sessions.insert(session); }
    static void removeSession(PPythonSession* session);

private:
    PPythonHost();
    void processEvents(bool mayWait);
    void announce(bool isThere, PDevice* device);

    std::unique_ptr<PCameraHost> m_cameras;
    std::set<PPythonSession*> m_sessions;
    py::object m_listener;
    QString m_sdk; ///< the choice; empty: none yet
    QStringList m_notices;
    int m_depth = 0; ///< of calls to processEvents() in each other
    bool m_hasCameras = false;
};
