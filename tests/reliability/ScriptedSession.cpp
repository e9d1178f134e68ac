// SPDX-License-Identifier: MIT
#include <reliability/ScriptedSession.h>

#include <reliability/CallHook.h>
#include <reliability/CompositeTruth.h>
#include <reliability/PanelTruth.h>
#include <reliability/ReliableCamera.h>
#include <reliability/ShortWait.h>

#include <support/WaitUntil.h>

#include <apps/common/camera/PExposureWatch.h>

#include <PCdPlugins/PTDevice/PTDevice.h>
#include <PCdPlugins/PTDevice/PTDeviceRegister.h>

#include <PCd/device/PDevice.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PPropertyCheck.h>
#include <PCd/property/value/PPropertyText.h>

#include <toupcam/sim/api/toupcamsim.h>

#include <QTimer>
#include <QWidget>

namespace {

constexpr int fewFrames = 3;
constexpr int fewestEditors = 15; // of numbers, regions, switches and choices
constexpr int controlsOfPlugin = 10;

/// The plugin's register. It does not search by itself when a camera comes or goes, some time
/// later, but when the session makes it: so the calls are the same each time.
PDeviceRegister* makeRegister() {
    auto* const made = new PTDeviceRegister;
    for (QTimer* timer : made->findChildren<QTimer*>())
        timer->setInterval(std::chrono::hours(1));
    return made;
}

} // namespace

bool ScriptedSession::isAnswering(PDevice& device) {
    const CallHook::Pause pause;
    return device.isAnswering();
}

ScriptedSession::ScriptedSession(const QString& folder, std::chrono::milliseconds patience)
    : m_folder(folder)
    , m_patience(patience) {
}

ScriptedSession::~ScriptedSession() = default;

void ScriptedSession::run() {
    openProgram();
    const std::pair<const char*, void (ScriptedSession::*)()> steps[]{
        {"catalogue", &ScriptedSession::readCatalogue},
        {"panels", &ScriptedSession::showPanels},
        {"profile saved", &ScriptedSession::saveProfile},
        {"modes", &ScriptedSession::changeModes},
        {"panels again", &ScriptedSession::showPanels},
        {"stream", &ScriptedSession::stream},
        {"still", &ScriptedSession::takeStill},
        {"recording", &ScriptedSession::record},
        {"trigger", &ScriptedSession::trigger},
        {"profile restored", &ScriptedSession::restoreProfile},
        {"pull mode", &ScriptedSession::pull},
        {"plugged in again while idle", &ScriptedSession::replugIdle},
        {"plugged in again while streaming", &ScriptedSession::replugStreaming}};
    for (const auto& [name, step] : steps) {
        if (require(hasCamera(), u"a camera for: %1"_qs.arg(QLatin1String(name))))
            (this->*step)();
    }
    closeProgram();
}

// ---- What the steps share -----------------------------------------------------------------------

bool ScriptedSession::require(bool isMet, const QString& what) {
    if (!isMet)
        m_failures.append(what);
    return isMet;
}

bool ScriptedSession::require(const PStatus& status, const QString& what) {
    return require(status.isOk(), u"%1: %2"_qs.arg(what, status.reason()));
}

void ScriptedSession::expectTrue(bool isTrue, const QString& claim) {
    if (!isTrue)
        m_lies.append(claim);
}

/// Until a fault has happened, all comes: however slow the machine is, the fault must be reached.
bool ScriptedSession::waitFor(const std::function<bool()>& predicate) {
    const bool isMet =
        waitShortly([&] { return predicate() || CallHook::happened() > 0; }, longestWait());
    return (isMet && predicate()) || waitShortly(predicate, m_patience);
}

// ---- The program and its camera -----------------------------------------------------------------

void ScriptedSession::openProgram() {
    m_manager = std::make_unique<PDeviceManager>();
    connect(m_manager.get(), &PDeviceManager::deviceAdded, this, &ScriptedSession::onDeviceAdded);
    connect(m_manager.get(), &PDeviceManager::deviceRemoved, this,
            &ScriptedSession::onDeviceRemoved);
    m_manager->addRegister(makeRegister());
}

void ScriptedSession::closeProgram() {
    m_manager.reset();
    // Devices that were removed, and the memory that their streams leave for later.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
    expectTrue(m_device.isNull(), u"the device is deleted with its register"_qs);
}

/// Searches again if the camera was lost: it may only have seemed so.
bool ScriptedSession::hasCamera() {
    if (!m_device) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_manager->updateDevices();
    }
    return m_device && require(m_device->link(), u"link"_qs);
}

void ScriptedSession::onDeviceAdded() {
    const QList<PDevice*> devices = m_manager->devices();
    expectTrue(devices.size() == 1, u"there is one camera"_qs);
    m_device = devices.last();
    m_mayBalance = false;
    expectTrue(qobject_cast<PTDevice*>(m_device)->sdkHandle() != nullptr,
               u"a camera that is listed is open"_qs);
    m_callbacksBefore = CallHook::dataCallbacks();
    m_isPushed = true;
    connect(m_device, &PDevice::imageChanged, this, [this] { ++m_shown; });
    connect(m_device, &PDevice::snapshotTaken, this, [this] { ++m_stills; });
}

void ScriptedSession::onDeviceRemoved(PDevice* device) {
    expectTrue(device->isGone() && !device->isStreaming(), u"a removed device is stopped"_qs);
    expectTrue(device->frameLedger().isBalanced(), u"the ledger of a lost camera balances"_qs);
    m_device = nullptr;
}

/// A callback in progress has been counted and its frame has not yet.
void ScriptedSession::checkLedger(PDevice* device) {
    expectTrue(device->frameLedger().isBalanced(), u"the ledger balances"_qs);
    const QPointer<PDevice> present(device);
    if (!m_isPushed)
        return;
    const auto areAllCounted = [&] {
        return !present ||
               present->frameLedger().produced == CallHook::dataCallbacks() - m_callbacksBefore;
    };
    expectTrue(waitShortly(areAllCounted, std::chrono::seconds(5)),
               u"the ledger counts every frame that the SDK pushed"_qs);
}

// ---- Settings -----------------------------------------------------------------------------------

void ScriptedSession::readCatalogue() {
    require(m_device->getSupportModes().size() == 2, u"two modes"_qs);
    require(!m_device->supportPropertyGroups().isEmpty(), u"groups"_qs);
    for (PDeviceProperty* property : m_device->supportProperties()) {
        PPropertyText::ofValue(property->valueInner(), property->rangeInner());
        PPropertyCheck::expectation(*property);
    }
}

/// While it opens, a camera that was lost before may be removed.
std::unique_ptr<QWidget> ScriptedSession::openPanel() {
    std::unique_ptr<QWidget> panel(m_device->createPropertiesWidget(nullptr));
    if (!require(panel != nullptr, u"a panel"_qs))
        return panel;
    // Those that read again and again would make the calls depend on how long all this takes.
    for (QTimer* timer : panel->findChildren<QTimer*>()) {
        if (!timer->isSingleShot())
            timer->stop();
    }
    panel->show();
    QCoreApplication::processEvents();
    return panel;
}

void ScriptedSession::showPanels() {
    const std::unique_ptr<QWidget> panel = openPanel();
    checkPanel(panel.get());
    for (const int hue : {20, 0}) {
        setHue(hue);
        QCoreApplication::processEvents();
        checkPanel(panel.get());
    }
}

/// As programs do while they show a camera, but once.
void ScriptedSession::readExposure() {
    if (m_device)
        const PExposureWatch watch(m_device, std::chrono::hours(1));
    QCoreApplication::processEvents();
}

/// What a lost camera had cannot be compared any more, nor what it may still be changing.
void ScriptedSession::checkPanel(const QWidget* panel) {
    if (!panel || !m_device || m_mayBalance || !isAnswering(*m_device))
        return;
    require(PanelTruth::countEditors(*panel, *m_device) >= fewestEditors &&
                CompositeTruth::countControls(*panel) == controlsOfPlugin,
            u"editors in the panel"_qs);
    m_wronglyShown += PanelTruth::findLies(*panel, *m_device);
    m_wronglyShown += CompositeTruth::findLies(*panel, *qobject_cast<PTDevice*>(m_device));
}

/// What is reported as set must be on the camera.
void ScriptedSession::setHue(int hue) {
    PDeviceProperty* const property = m_device ? m_device->getProperty("hue") : nullptr;
    if (property == nullptr || !require(PPropertyCheck::setAndVerify(*property, hue), u"hue"_qs))
        return;
    const CallHook::Pause pause;
    int onCamera = hue;
    const HToupcam handle = qobject_cast<PTDevice*>(m_device)->sdkHandle();
    if (Toupcam_get_Hue(handle, &onCamera) >= 0)
        expectTrue(onCamera == hue, u"the hue that is reported as set is on the camera"_qs);
}

void ScriptedSession::changeModes() {
    const QList<PDeviceMode> modes = m_device->getSupportModes();
    for (auto mode = modes.rbegin(); mode != modes.rend() && m_device; ++mode)
        require(m_device->setMode(*mode), u"mode %1"_qs.arg(mode->name));
    if (m_device)
        require(m_device->getCurrentMode().id == "0", u"the first mode again"_qs);
}

// ---- Frames -------------------------------------------------------------------------------------

bool ScriptedSession::startStream() {
    m_shown = 0;
    m_stills = 0;
    if (!require(!m_device.isNull(), u"a camera to start"_qs) ||
        !require(m_device->startStream(), u"start"_qs))
        return false;
    return require(waitFor([this] { return m_shown >= fewFrames || !m_device; }) && m_device,
                   u"frames are shown"_qs);
}

void ScriptedSession::stopStream() {
    if (!m_device || !require(m_device->stopStream(), u"stop"_qs) || !m_device)
        return;
    checkLedger(m_device);
}

void ScriptedSession::stream() {
    const std::unique_ptr<QWidget> panel = openPanel();
    if (startStream())
        balanceWhite();
    stopStream();
    checkPanel(panel.get());
}

/// Waits until both values have been read again, or could not be.
void ScriptedSession::balanceWhite() {
    const quint64 answers = CallHook::balanceCallbacks();
    const std::size_t readings = CallHook::count("Toupcam_get_TempTint");
    if (PDeviceProperty* const balance = m_device->getProperty("awbonce"))
        balance->setValue(QVariant());
    m_mayBalance = !waitFor([&] {
        return (CallHook::balanceCallbacks() > answers &&
                CallHook::count("Toupcam_get_TempTint") >= readings + 2) ||
               !m_device;
    });
    require(!m_mayBalance, u"white is balanced"_qs);
}

void ScriptedSession::takeStill() {
    if (startStream() && require(m_device->triggerStillCapture(), u"still requested"_qs)) {
        require(waitFor([this] { return m_stills > 0 || !m_device; }) && m_device,
                u"the still arrives"_qs);
    }
    stopStream();
}

// ---- Hot-plugging -------------------------------------------------------------------------------

void ScriptedSession::replugIdle() {
    const QPointer<PDevice> before = m_device;
    ToupcamSim_unplug(ReliableCamera::id);
    ToupcamSim_plug(ReliableCamera::id);
    m_manager->updateDevices();
    require(waitFor([&] { return before.isNull() && m_device; }), u"another device"_qs);
}

void ScriptedSession::replugStreaming() {
    startStream();
    const QPointer<PDevice> before = m_device;
    ToupcamSim_unplug(ReliableCamera::id);
    require(waitFor([&] { return before.isNull() && m_manager->devices().isEmpty(); }),
            u"the loss is noticed"_qs);
    ToupcamSim_plug(ReliableCamera::id);
    m_manager->updateDevices();
    if (!require(!m_device.isNull(), u"the return is noticed"_qs))
        return;
    if (require(m_device->link(), u"link again"_qs))
        startStream();
    stopStream();
}
