// SPDX-License-Identifier: MIT
#include <apps/pcdview/camera/PViewCamera.h>

#include <apps/common/camera/PCaptureMode.h>
#include <apps/pcdview/camera/PSettingTitle.h>

#include <PCd/device/PDevice.h>
#include <PCd/frame/PFrameStamp.h>
#include <PCd/profile/PDeviceProfilePlan.h>
#include <PCd/property/PDeviceProperty.h>

#include <algorithm>
#include <utility>

namespace {

constexpr std::chrono::milliseconds showEvery(33);

} // namespace

PViewCamera::PViewCamera(PCameraIdentity identity, QObject* parent, PExposureCountdown::Now now)
    : QObject(parent)
    , m_identity(std::move(identity))
    , m_now(std::move(now)) {
    m_showSoon.setSingleShot(true);
    m_showSoon.setTimerType(Qt::PreciseTimer);
    connect(&m_showSoon, &QTimer::timeout, this, &PViewCamera::showNewest);
}

PViewCamera::~PViewCamera() {
    if (m_device == nullptr)
        return;
    PDevice* const device = m_device;
    leaveDevice();
    device->stopStream();
    device->unlink();
}

PStatus PViewCamera::attach(PDevice* device) {
    m_device = device;
    m_pictures = 0;
    m_notes.clear();
    connectDevice();
    const PStatus status = open();
    if (!status.isOk() && m_device != nullptr) {
        PDevice* const refused = m_device;
        leaveDevice();
        m_stateWithoutDevice = State::NotOpen;
        refused->unlink();
    }
    emit stateChanged();
    emit modeChanged();
    return status;
}

/// Disconnects from the device.
void PViewCamera::leaveDevice() {
    m_exposure.reset();
    m_countdown.reset();
    m_memory.release();
    m_isTriggered = false;
    m_isRunning = false;
    if (m_device == nullptr) // deleted, with its connections
        return;
    disconnect(m_device, nullptr, this, nullptr);
    if (PDeviceProperty* const capture = PCaptureMode::property(*m_device))
        disconnect(capture, nullptr, this, nullptr);
    m_device = nullptr;
}

PStatus PViewCamera::open() {
    const PStatus linked = m_device->link();
    if (!linked.isOk())
        return linked;
    m_device->supportProperties();
    if (!m_memory.isEmpty())
        restoreSettings();
    if (m_device == nullptr)
        return PStatus::failure(tr("the camera was unplugged again"));
    m_memory.follow(m_device);
    m_exposure = std::make_unique<PExposureWatch>(m_device);
    followTrigger();
    m_countdown = std::make_unique<PExposureCountdown>(m_device, m_now);
    return m_wantsLive ? m_device->startStream() : PStatus(PStatus::Ok);
}

void PViewCamera::restoreSettings() {
    PDeviceProfileReport report;
    const PStatus status = m_memory.restore(*m_device, report);
    if (!status.isOk())
        m_notes.append(tr("The settings could not be restored: %1").arg(status.reason()));
    for (const PDeviceProfileReport::Item& item : report.refused)
        m_notes.append(
            tr("Not restored: %1 (%2)").arg(PSettingTitle::of(m_device, item.id), item.reason));
}

void PViewCamera::followTrigger() {
    PDeviceProperty* const capture = PCaptureMode::property(*m_device);
    if (capture == nullptr)
        return;
    const auto look = [this] {
        const bool isTriggered = PCaptureMode::isTriggered(*m_device);
        if (isTriggered == m_isTriggered)
            return;
        m_isTriggered = isTriggered;
        m_triggeredPictures = 0;
        if (isTriggered)
            m_triggersEnd.reset();
        m_pace.reset();
        emit stateChanged();
    };
    connect(capture, &PDeviceProperty::valueChanged, this, look);
    const auto lookAhead = [this, capture](const QVariant& value) {
        if (m_isTriggered && !PCaptureMode::isTriggered(*capture, value))
            m_triggersEnd = std::chrono::steady_clock::now();
    };
    connect(capture, &PDeviceProperty::valueAboutToBeSent, this, lookAhead);
    look();
}

void PViewCamera::connectDevice() {
    connect(m_device, &PDevice::imageChanged, this, &PViewCamera::countFrame);
    connect(m_device, &PDevice::snapshotTaken, this, &PViewCamera::takePicture);
    connect(m_device, &PDevice::modeChanged, this, &PViewCamera::modeChanged);
    // Nothing removes a device that its plugin deletes.
    connect(m_device, &QObject::destroyed, this, &PViewCamera::detach);
}

void PViewCamera::detach() {
    if (m_device != nullptr)
        m_lastLedger = m_device->frameLedger();
    leaveDevice();
    m_stateWithoutDevice = State::Unplugged;
    m_pace.reset();
    emit stateChanged();
}

PStatus PViewCamera::setLive(bool live) {
    if (m_device == nullptr)
        return PStatus::failure(tr("the camera is unplugged"));
    m_wantsLive = live;
    const PStatus status = live ? m_device->startStream() : m_device->stopStream();
    m_pace.reset();
    m_countdown->restart();
    emit stateChanged();
    return status;
}

PStatus PViewCamera::setMode(const PDeviceMode& mode) {
    if (m_device == nullptr)
        return PStatus::failure(tr("the camera is unplugged"));
    return m_device->setMode(mode);
}

PDeviceProfileReport PViewCamera::apply(PDeviceProfilePlan& plan) {
    // The profile's exposure applies even if it differs in nothing but automatic exposure: the
    // watch must not restore the automatic one.
    m_exposure.reset();
    const PDeviceProfileReport report = plan.apply();
    if (m_device != nullptr) // it may have been unplugged
        m_exposure = std::make_unique<PExposureWatch>(m_device);
    return report;
}

PStatus PViewCamera::readiness() const {
    switch (state()) {
    case State::Live:
        break;
    case State::Paused:
        return PStatus::failure(tr("the live picture is stopped; start it first"));
    case State::Unplugged:
        return PStatus::failure(tr("the camera is unplugged"));
    case State::NotOpen:
        return PStatus::failure(tr("the camera is not open"));
    }
    return PStatus::Ok;
}

PStatus PViewCamera::takeSnapshot() {
    if (const PStatus ready = readiness(); !ready.isOk())
        return ready;
    return m_device->triggerStillCapture()
               ? PStatus(PStatus::Ok)
               : PStatus::failure(tr("the camera refused to take a still"));
}

void PViewCamera::setRecorded(bool recorded) {
    m_isRecorded = recorded;
    emit stateChanged();
}

PViewCamera::State PViewCamera::state() const {
    if (m_device == nullptr)
        return m_stateWithoutDevice;
    return m_device->isStreaming() ? State::Live : State::Paused;
}

PFrameLedger PViewCamera::ledger() const {
    return m_device != nullptr ? m_device->frameLedger() : m_lastLedger;
}

double PViewCamera::framesPerSecond() const {
    return m_pace.framesPerSecond(PFramePace::Clock::now());
}

void PViewCamera::setRunning(bool running) {
    if (m_countdown != nullptr)
        m_countdown->setRunning(running);
    if (std::exchange(m_isRunning, running) != running)
        emit stateChanged();
}

bool PViewCamera::isAwaitingTriggers() const {
    return m_isTriggered && (!m_isRunning || PCaptureMode::isTriggeredFromOutside(*m_device));
}

std::optional<std::chrono::seconds> PViewCamera::untilNextPicture() const {
    return m_countdown == nullptr ? std::nullopt : m_countdown->left();
}

double PViewCamera::megabytesPerSecond() const {
    return framesPerSecond() * double(m_frame.image.dataSize()) / 1e6;
}

/// A panel may keep forwarding live frames as snapshots after its run has ended; nobody wants
/// those. A triggered frame belongs to a run even if it arrives after the run's end.
void PViewCamera::takePicture(const PDeviceFrame& frame) {
    // While the settings of the live stream are being sent, frames arrive with the old stamp.
    const bool isTriggered = PCaptureMode::isTriggered(*frame.stamp->settings) &&
                             (!m_triggersEnd || frame.stamp->arrived <= *m_triggersEnd);
    if (!frame.stamp->still && !isTriggered)
        return;
    // Not read from the ledger, which counts a snapshot only after all listeners have returned.
    ++m_pictures;
    if (m_isTriggered)
        ++m_triggeredPictures;
    emit snapshotTaken(frame);
}

void PViewCamera::countFrame(const PImage& image) {
    m_pace.tick(PFrameStamp::of(image)->arrived);
    if (m_showSoon.isActive())
        return;
    // Counted from the last frame shown and not from this one: a camera of about the same pace
    // would else find the timer still running at every second frame.
    const auto since = std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now() - m_lastShown);
    m_showSoon.start(std::max(showEvery - since, std::chrono::milliseconds(0)));
}

void PViewCamera::showNewest() {
    if (m_device == nullptr)
        return;
    m_lastShown = std::chrono::steady_clock::now();
    m_frame = m_device->newestFrame();
    if (!m_frame.image.isNull())
        emit frameChanged(m_frame);
}

#include "moc_PViewCamera.cpp"
