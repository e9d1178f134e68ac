// SPDX-License-Identifier: MIT
#include <python/host/PPythonSession.h>

#include <python/host/PPybind.h>
#include <python/host/PPythonError.h>
#include <python/host/PPythonHost.h>
#include <python/host/PPythonProcess.h>

#include <apps/common/camera/PFrameExposure.h>

#include <PCd/device/PDeviceManager.h>
#include <PCd/device/PDeviceRoles.h>

#include <utility>

namespace {

// A camera may take long to begin, also a simulated one that first makes its specimen.
constexpr std::chrono::seconds shortestPatience(30);
constexpr std::size_t largestPixel = 4; // bytes

/// The last owner may be any thread on which Python collects its garbage.
void release(PPythonSession* session) {
    if (PPythonProcess::isForked())
        return; // it belongs to the first process
    if (PPythonHost::isOwnThread()) {
        const PUnlockedPython unlocked;
        delete session;
    } else {
        session->deleteLater(); // on the thread of the cameras, as it closes one
    }
}

} // namespace

std::shared_ptr<PPythonSession> PPythonSession::open(const QString& camera) {
    PPythonHost& host = PPythonHost::withCameras();
    host.handleEvents(); // cameras may have come and gone
    const PDeviceManager::Selection selection = host.manager().select(camera);
    if (selection.device == nullptr)
        throw PPythonError("NoCameraError", selection.problem);
    PDevice& device = *selection.device;
    if (device.isLinked()) {
        throw PPythonError(
            "BusyError", u"camera %1 is open already: close it first, or use the "
                         "object that opened it"_qs.arg(QString::fromUtf8(device.deviceId(false))));
    }
    std::shared_ptr<PPythonSession> session(
        new PPythonSession(&device, host.cameras().identify(&device)), &release);
    session->link();
    return session;
}

PPythonSession::PPythonSession(PDevice* device, PCameraIdentity identity)
    : m_device(device)
    , m_identity(std::move(identity)) {
    PPythonHost::instance().addSession(this);
}

PPythonSession::~PPythonSession() {
    close();
    PPythonHost::removeSession(this);
}

void PPythonSession::link() {
    const PUnlockedPython unlocked;
    PPythonError::check(m_device->link());
    connect(m_device, &PDevice::unlinked, this, &PPythonSession::forget);
    // Only now do frames carry settings, and roles can be found.
    m_device->supportProperties();
    m_names = PSettingNames::of(m_device);
    m_exposure = std::make_unique<PExposureWatch>(m_device);
}

/// The camera was unplugged, or some other part of the program has unlinked it: the device is about
/// to be deleted, so its ledger is read now.
void PPythonSession::forget() {
    m_isUnplugged = m_device != nullptr && m_device->isGone();
    m_lastLedger = ledger();
    m_exposure.reset();
    m_device = nullptr;
}

PDevice& PPythonSession::device() const {
    PPythonHost::instance(); // throws on another thread and in a forked process
    if (isOpen())
        return *m_device;
    if (m_isUnplugged) {
        throw PPythonError("UnpluggedError", u"camera %1 was unplugged: plug it in, and open it "
                                             "again"_qs.arg(m_identity.id));
    }
    throw PPythonError(
        "ClosedError",
        u"camera %1 is closed: open it again with pcd.open(\"%1\")"_qs.arg(m_identity.id));
}

void PPythonSession::check(const PStatus& status, const char* type) const {
    if (status.isOk())
        return;
    if (!device().isAnswering()) {
        throw PPythonError("UnpluggedError", u"camera %1 no longer answers: plug it in again, and "
                                             "open it again"_qs.arg(m_identity.id));
    }
    throw PPythonError(type, u"camera %1: %2"_qs.arg(m_identity.id, status.reason()));
}

void PPythonSession::close() {
    if (m_device == nullptr || PPythonProcess::isForked())
        return;
    const PUnlockedPython unlocked;
    PDevice& device = *m_device;
    disconnect(&device, nullptr, this, nullptr);
    stopStream(m_sink);
    m_lastLedger = device.frameLedger();
    m_exposure.reset();
    m_device = nullptr;
    device.unlink();
}

PFrameLedger PPythonSession::ledger() const {
    return m_device != nullptr ? m_device->frameLedger() : m_lastLedger;
}

void PPythonSession::checkIdle() const {
    if (m_sink != nullptr || device().isStreaming()) {
        throw PPythonError("BusyError", u"camera %1 is streaming already: close that stream "
                                        "first"_qs.arg(m_identity.id));
    }
}

void PPythonSession::startStream(const std::shared_ptr<PFrameSink>& sink, std::size_t frames) {
    PDevice& camera = device();
    checkIdle();
    const PDeviceMode mode = camera.reportedMode();
    // Frames also wait for the event loop, which runs only while Python waits: no more of them than
    // wait for Python.
    camera.setFrameByteLimit(frames * std::size_t(mode.width) * std::size_t(mode.height) *
                             largestPixel);
    m_sink = sink;
    camera.addFrameSink(sink);
    PStatus started;
    {
        const PUnlockedPython unlocked;
        started = camera.startStream();
    }
    if (started.isOk())
        return;
    camera.removeFrameSink(sink);
    m_sink.reset();
    check(started);
}

PStatus PPythonSession::stopStream(const std::shared_ptr<PFrameSink>& sink) {
    if (sink == nullptr || m_sink != sink)
        return {};
    // `sink` may be the member itself, which is empty now.
    const std::shared_ptr<PFrameSink> ended = std::exchange(m_sink, nullptr);
    if (m_device == nullptr)
        return {};
    const PUnlockedPython unlocked;
    const QPointer<PDevice> camera = m_device;
    const PStatus stopped = camera->stopStream();
    if (camera != nullptr)
        camera->removeFrameSink(ended);
    return stopped;
}

std::chrono::milliseconds PPythonSession::longestWait() const {
    const PFrameExposure exposure = PFrameExposure::of(PDeviceRoles::of(device()), m_names);
    // Automatic exposure may lengthen it meanwhile.
    return shortestPatience +
           std::chrono::milliseconds(qint64(4 * exposure.milliseconds.value_or(0)));
}
