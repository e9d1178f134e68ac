// SPDX-License-Identifier: MIT
#include <reliability/SoakCamera.h>

#include <reliability/ReliableCamera.h>
#include <reliability/ShortWait.h>

#include <PCdPlugins/PTDevice/PTDeviceRegister.h>

#include <PCd/device/PDevice.h>

#include <toupcam/sim/api/toupcamsim.h>

#include <QTimer>

#include <atomic>
#include <cstring>

namespace {

constexpr std::chrono::seconds longestWaiting(60);
// Frames come as fast as they are taken: more of them may not wait than this.
constexpr std::size_t mostWaitingBytes = std::size_t(1) << 20;

std::atomic<quint64> soakCallbacks{0};

int countCallback(const char* name, int moment, HRESULT* /*result*/) {
    if (moment == TOUPCAMSIM_BEFORE_CALLBACK && std::strcmp(name, "data") == 0)
        ++soakCallbacks;
    return TOUPCAMSIM_PASS;
}

} // namespace

SoakCamera::SoakCamera()
    : m_manager(std::make_unique<PDeviceManager>()) {
    ReliableCamera::install(R"({"kind": "ring", "unpaced": true})");
    ToupcamSim_setHook(countCallback);
    connect(m_manager.get(), &PDeviceManager::deviceAdded, this, &SoakCamera::onDeviceAdded);
    connect(m_manager.get(), &PDeviceManager::deviceRemoved, this, &SoakCamera::closeLedger);
    auto* const made = new PTDeviceRegister;
    for (QTimer* timer : made->findChildren<QTimer*>())
        timer->setInterval(0);
    m_manager->addRegister(made);
    require(!m_device.isNull(), u"a camera at the start"_qs);
}

SoakCamera::~SoakCamera() {
    m_manager.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ToupcamSim_setHook(nullptr);
    ToupcamSim_reset();
}

void SoakCamera::miscount() {
    ++soakCallbacks;
}

bool SoakCamera::require(bool isMet, const QString& what) {
    if (!isMet)
        m_complaints.append(what);
    return isMet;
}

void SoakCamera::onDeviceAdded(PDevice* device) {
    m_device = device;
    m_callbacksBefore = soakCallbacks;
    device->link();
    device->setFrameByteLimit(mostWaitingBytes);
    connect(device, &PDevice::imageChanged, this, [this] { ++m_shown; });
}

/// Adds up the frames of a device that is stopped and about to be deleted.
void SoakCamera::closeLedger(const PDevice* device) {
    const PFrameLedger ledger = device->frameLedger();
    const quint64 pushed = soakCallbacks - m_callbacksBefore;
    require(ledger.isBalanced(), u"the ledger does not balance"_qs);
    require(ledger.produced == pushed,
            u"%1 frames were pushed, the ledger has %2"_qs.arg(QString::number(pushed),
                                                               QString::number(ledger.produced)));
    m_counts.frames += pushed;
    m_counts.ledger.produced += ledger.produced;
    m_counts.ledger.waiting += ledger.waiting;
    for (std::size_t i = 0; i < PFrameOutcomeCount; ++i)
        m_counts.ledger.outcomes[i] += ledger.outcomes[i];
}

bool SoakCamera::start() {
    m_shown = 0;
    ++m_counts.starts;
    return require(m_device && m_device->startStream().isOk(), u"a stream did not start"_qs) &&
           require(waitShortly([this] { return m_shown > 0; }, longestWaiting),
                   u"no frame came"_qs);
}

void SoakCamera::stop() {
    require(m_device && m_device->stopStream().isOk(), u"a stream did not stop"_qs);
}

void SoakCamera::startAndStop(int times) {
    for (int i = 0; i < times && start(); ++i)
        stop();
}

/// Every second time while it streams.
void SoakCamera::replug(int times) {
    for (int i = 0; i < times && m_complaints.isEmpty(); ++i) {
        if (i % 2 == 0)
            start();
        ToupcamSim_unplug(ReliableCamera::id);
        require(waitShortly([this] { return m_device.isNull(); }, longestWaiting),
                u"a loss was not noticed"_qs);
        ToupcamSim_plug(ReliableCamera::id);
        require(waitShortly([this] { return !m_device.isNull(); }, longestWaiting),
                u"a return was not noticed"_qs);
        ++m_counts.replugs;
        ToupcamSim_clearJournal();
    }
}

void SoakCamera::takeFrames(quint64 frames) {
    const quint64 end = soakCallbacks + frames;
    if (start())
        require(waitShortly([end] { return soakCallbacks >= end; }, longestWaiting),
                u"frames did not come"_qs);
    stop();
}

void SoakCamera::settle() {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ToupcamSim_clearJournal();
}
