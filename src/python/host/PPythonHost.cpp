// SPDX-License-Identifier: MIT
#include <python/host/PPythonHost.h>

#include <python/host/PPythonError.h>
#include <python/host/PPythonProcess.h>
#include <python/host/PPythonSession.h>

#include <PCd/device/PDevice.h>

#include <PCore/work/PGuardedCall.h>

#include <PLog/PLog.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QScopeGuard>
#include <QThread>
#include <QTimer>

#include <clocale>

namespace {

// Between two looks for Ctrl-C while nothing happens.
constexpr std::chrono::milliseconds heartbeat(50);

// Never deleted by a destructor at exit: by then the interpreter is gone.
PPythonHost* theHost = nullptr;

// A flag of the thread itself: the system gives the id of a thread that has ended to later ones.
thread_local bool isHostThread = false;

/// Qt sets the whole locale from the environment; Python and its modules rely on "C" for numbers.
void makeApplication() {
    static int count = 1;
    static char name[] = "python";
    static char* arguments[] = {name, nullptr};
    const QByteArray numbers = setlocale(LC_NUMERIC, nullptr);
    new QCoreApplication(count, arguments); // for as long as the process runs
    PLog::installQtMessageHandler();
    setlocale(LC_NUMERIC, numbers.constData());
}

void checkApplication() {
    if (QCoreApplication::instance() == nullptr)
        makeApplication();
    else if (QCoreApplication::instance()->thread() != QThread::currentThread()) {
        throw PPythonError("ThreadError",
                           u"cameras are used on the thread of Qt's application object, and this "
                           "is another one: call pcd from that thread"_qs);
    }
}

void checkProcess() {
    if (PPythonProcess::isForked()) {
        throw PPythonError("Error",
                           u"this process was forked from the one that has the cameras: use them "
                           "there, or start processes with "
                           "multiprocessing.get_context(\"spawn\")"_qs);
    }
}

} // namespace

PPythonHost::PPythonHost()
    : m_cameras(std::make_unique<PCameraHost>())
    , m_listener(py::none()) {
    // A script's standard error stream is its own: only what is wrong.
    PLog::setFilter(u"warning"_qs);
    const PStatus filter = PLog::setFilterFromEnvironment();
    if (!filter.isOk())
        m_notices.append(filter.reason());
}

PPythonHost& PPythonHost::instance() {
    checkProcess();
    if (theHost == nullptr) {
        checkApplication();
        theHost = new PPythonHost;
        isHostThread = true;
    }
    if (!isOwnThread()) {
        throw PPythonError("ThreadError",
                           u"cameras belong to the thread that used pcd first, and this is "
                           "another one: call pcd from that thread, and pass frames to others"_qs);
    }
    if (!theHost->m_cameras)
        throw PPythonError("Error", u"the interpreter is about to end: all cameras are closed"_qs);
    return *theHost;
}

PPythonHost& PPythonHost::withCameras() {
    PPythonHost& host = instance();
    if (!host.m_hasCameras)
        host.findCameras({});
    return host;
}

bool PPythonHost::isOwnThread() {
    return isHostThread;
}

void PPythonHost::shutDown() noexcept {
    if (!isOwnThread() || PPythonProcess::isForked() || !theHost->m_cameras)
        return;
    PGuardedCall::logged([] {
        theHost->m_listener = py::none();
        const py::gil_scoped_release release;
        for (PPythonSession* const session : std::set(theHost->m_sessions))
            session->close();
        // Devices leave the list while the host is destroyed, which is no news then.
        QObject::disconnect(&theHost->manager(), nullptr, theHost, nullptr);
        theHost->m_cameras.reset();
    });
}

void PPythonHost::removeSession(PPythonSession* session) {
    theHost->m_sessions.erase(session);
}

void PPythonHost::loadSdk(const QString& choice) {
    if (choice == m_sdk)
        return;
    if (!m_sdk.isEmpty()) {
        throw PPythonError("Error",
                           u"this process uses the SDK \"%1\" already, and \"%2\" is another one: "
                           "choose it before the first use of cameras"_qs.arg(m_sdk, choice));
    }
    PStatus loaded;
    {
        const py::gil_scoped_release release;
        loaded = m_cameras->loadSdk(choice);
    }
    const PCameraSdk& sdk = m_cameras->sdk();
    // Other plugins may need no SDK.
    if (!loaded.isOk() && !sdk.isFallback())
        throw PPythonError("Error", loaded.reason());
    m_sdk = choice;
    if (sdk.isFallback()) {
        m_notices.append(
            loaded.isOk()
                ? u"this system has no camera SDK (libtoupcam.so): the cameras are simulated"_qs
                : loaded.reason());
    }
}

void PPythonHost::findCameras(const QStringList& pluginPaths) {
    if (m_hasCameras) {
        throw PPythonError("Error",
                           u"the plugins are loaded already: choose them before the first use of "
                           "cameras"_qs);
    }
    if (m_sdk.isEmpty())
        loadSdk(u"auto"_qs);
    PStatus loaded;
    {
        const py::gil_scoped_release release;
        loaded = m_cameras->loadPlugins(pluginPaths);
    }
    for (const PPluginLoader::Failure& failure : m_cameras->pluginFailures())
        m_notices.append(u"plugin \"%1\" not loaded: %2"_qs.arg(failure.path, failure.reason));
    PPythonError::check(loaded);
    m_hasCameras = true;
    {
        const py::gil_scoped_release release;
        m_cameras->findCameras();
    }
    connect(&manager(), &PDeviceManager::deviceAdded, this,
            [this](PDevice* device) { announce(true, device); });
    connect(&manager(), &PDeviceManager::deviceRemoved, this,
            [this](PDevice* device) { announce(false, device); });
}

std::vector<PCameraIdentity> PPythonHost::present() {
    handleEvents(); // cameras may have come and gone
    std::vector<PCameraIdentity> found;
    for (const PDevice* device : manager().devices())
        found.push_back(m_cameras->identify(device));
    return found;
}

void PPythonHost::rescan() {
    handleEvents();
    {
        const py::gil_scoped_release release;
        manager().updateDevices();
    }
    handleEvents();
}

QStringList PPythonHost::takeNotices() {
    return std::exchange(m_notices, {});
}

void PPythonHost::setListener(py::object listener) {
    m_listener = std::move(listener);
}

/// Called inside the register's update, where a listener that opens a camera would find the list
/// half changed: the listener is called later, by this thread's event loop.
void PPythonHost::announce(bool isThere, PDevice* device) {
    const PCameraIdentity identity = m_cameras->identify(device);
    const auto call = [this, isThere, identity] {
        const py::gil_scoped_acquire acquire;
        if (m_listener.is_none())
            return;
        try {
            m_listener(isThere, identity.id, identity.model, identity.serial, identity.simulated);
        } catch (py::error_already_set& error) {
            // No exception passes through the event loop: Ctrl-C comes again after it.
            if (error.matches(PyExc_KeyboardInterrupt))
                PyErr_SetInterrupt();
            else
                error.discard_as_unraisable(m_listener);
        }
    };
    QMetaObject::invokeMethod(this, call, Qt::QueuedConnection); // to this thread, but later
}

/// Without the interpreter's lock, as other threads of Python go on meanwhile.
void PPythonHost::processEvents(bool mayWait) {
    const py::gil_scoped_release release;
    ++m_depth;
    const auto leave = qScopeGuard([this] { --m_depth; });
    QEventLoop loop;
    loop.processEvents(mayWait ? QEventLoop::WaitForMoreEvents : QEventLoop::AllEvents);
    // Devices that are gone are deleted by a running loop, and here none runs. Not inside another
    // call, which may stand in a function of such an object.
    if (m_depth == 1 && QThread::currentThread()->loopLevel() == 0)
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void PPythonHost::handleEvents() {
    processEvents(false);
    if (PyErr_CheckSignals() != 0)
        throw py::error_already_set();
}

bool PPythonHost::waitFor(const std::function<bool()>& predicate,
                          std::optional<std::chrono::milliseconds> atMost) {
    const QDeadlineTimer deadline =
        atMost ? QDeadlineTimer(*atMost) : QDeadlineTimer(QDeadlineTimer::Forever);
    QTimer timer;
    timer.start(atMost ? std::min(*atMost, heartbeat) : heartbeat);
    handleEvents();
    while (!predicate()) {
        if (deadline.hasExpired())
            return false;
        processEvents(true);
        if (PyErr_CheckSignals() != 0)
            throw py::error_already_set();
    }
    return true;
}
