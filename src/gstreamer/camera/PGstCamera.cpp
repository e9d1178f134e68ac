// SPDX-License-Identifier: MIT
#include <gstreamer/camera/PGstCamera.h>

#include <gstreamer/camera/PGstHost.h>

#include <PCd/device/PDevice.h>
#include <PCd/device/PDeviceManager.h>
#include <PCd/property/PDeviceProperty.h>

#include <PCore/PPrintableText.h>

#include <QStringList>

#include <algorithm>
#include <utility>

namespace {

using Outcome = PGstCamera::Outcome;
using Item = PGstFrameQueue::Item;

QString toId(const PDevice* device) {
    return QString::fromUtf8(device->deviceId(false));
}

QStringList toNames(const QList<PDeviceMode>& modes) {
    QStringList names;
    for (const PDeviceMode& mode : modes)
        names.append(u"%1 (%2)"_qs.arg(QString::fromLatin1(mode.id), mode.name));
    return names;
}

/// The modes with this id or name.
QList<PDeviceMode> withName(QList<PDeviceMode> modes, const QString& wanted) {
    modes.removeIf([&](const PDeviceMode& mode) {
        return QString::fromLatin1(mode.id) != wanted && mode.name != wanted;
    });
    return modes;
}

} // namespace

PGstCamera::PGstCamera(std::shared_ptr<PGstFrameQueue> queue)
    : m_queue(std::move(queue)) {
}

PGstCamera::~PGstCamera() {
    close();
}

Outcome PGstCamera::open(const PGstOptions& options) {
    m_options = options;
    PGstHost& host = PGstHost::instance();
    const PStatus prepared = host.prepare(options.sdk, options.scene);
    if (!prepared.isOk())
        return {Outcome::Code::Failed, prepared.reason()};
    PDeviceManager& manager = host.manager();
    const PDeviceManager::Selection selection = manager.select(options.camera);
    if (selection.device == nullptr)
        return {Outcome::Code::NotFound, selection.problem};
    connect(&manager, &PDeviceManager::deviceAdded, this, &PGstCamera::onAdded);
    connect(&manager, &PDeviceManager::deviceRemoved, this, &PGstCamera::onRemoved);
    m_id = toId(selection.device);
    const Outcome outcome = link(selection.device);
    if (outcome.code != Outcome::Code::Done)
        close();
    return outcome;
}

Outcome PGstCamera::link(PDevice* device) {
    if (!PGstHost::instance().claim(device))
        return {Outcome::Code::Busy,
                u"camera %1 is used by another element of this process"_qs.arg(m_id)};
    m_device = device;
    const PStatus linked = device->link();
    if (!linked.isOk())
        return {Outcome::Code::Failed, u"camera %1: %2"_qs.arg(m_id, linked.reason())};
    QList<PDeviceMode> modes; // without them there are no caps
    const PStatus read = device->readModes(modes);
    const PStatus status = read.isOk() ? prepare() : read;
    if (m_device == nullptr)
        return {Outcome::Code::Failed, u"camera %1 was unplugged"_qs.arg(m_id)};
    if (!m_device->isAnswering()) // whatever failed first: that is why
        return {Outcome::Code::Failed, silence()};
    if (!read.isOk())
        return {Outcome::Code::Failed, u"camera %1: %2"_qs.arg(m_id, read.reason())};
    return status.isOk() ? Outcome() : Outcome{Outcome::Code::WrongSettings, status.reason()};
}

/// In this order: a mode resets regions, and a trigger holds for the settings as they are.
PStatus PGstCamera::prepare() {
    m_device->supportProperties(); // frames carry settings only once it was read
    PStatus status = m_mode.width > 0 ? m_device->setMode(m_mode) : setNamedMode();
    if (status.isOk())
        status = applyAll();
    return status.isOk() ? prepareTrigger() : status;
}

PStatus PGstCamera::setNamedMode() {
    if (m_options.mode.isEmpty())
        return PStatus::Ok;
    QList<PDeviceMode> all;
    const PStatus read = m_device->readModes(all);
    if (!read.isOk())
        return read;
    const QList<PDeviceMode> found = withName(all, m_options.mode);
    if (found.isEmpty())
        return PStatus::failure(u"camera %1 has no mode \"%2\": expected one of %3"_qs.arg(
            m_id, PPrintableText::toLine(m_options.mode), toNames(all).join(u", "_qs)));
    return m_device->setMode(found.first());
}

PStatus PGstCamera::applyAll() {
    PGstSettings settings;
    PStatus status = settings.read(m_options.settings);
    if (status.isOk())
        status = settings.apply(*m_device);
    return status.isOk() ? m_later.apply(*m_device) : status;
}

PStatus PGstCamera::prepareTrigger() {
    if (m_options.trigger == PGstOptions::Trigger::None)
        return PStatus::Ok;
    m_trigger = std::make_unique<PTriggerControl>(*m_device);
    const bool isExternal = m_options.trigger == PGstOptions::Trigger::External;
    std::optional<std::chrono::microseconds> exposure;
    if (m_options.triggerExposure.count() > 0)
        exposure = m_options.triggerExposure;
    return m_trigger->prepare(isExternal ? PTriggerControl::Source::External
                                         : PTriggerControl::Source::Software,
                              exposure, std::max(m_options.triggerFrames, 1));
}

void PGstCamera::close() {
    if (m_device != nullptr) {
        stop();
        m_device->unlink();
        release();
    }
    if (PGstHost::instance().isPrepared())
        PGstHost::instance().manager().disconnect(this);
    m_later = {};
    m_mode = {};
}

void PGstCamera::release() {
    m_trigger.reset(); // it uses the device
    PGstHost::instance().release(std::exchange(m_device, nullptr));
}

QString PGstCamera::note() const {
    return PGstHost::instance().note();
}

QList<PDeviceMode> PGstCamera::modes() const {
    if (m_device == nullptr)
        return {};
    QList<PDeviceMode> modes;
    m_device->readModes(modes);
    return m_options.mode.isEmpty() ? modes : withName(modes, m_options.mode);
}

PDeviceMode PGstCamera::mode() const {
    return m_device == nullptr ? PDeviceMode() : m_device->reportedMode();
}

PGstCatalogue PGstCamera::catalogue() const {
    return m_device == nullptr ? PGstCatalogue() : PGstCatalogue::of(*m_device);
}

std::optional<QString> PGstCamera::value(const QByteArray& id) const {
    PDeviceProperty* const property = m_device == nullptr ? nullptr : m_device->getProperty(id);
    if (property == nullptr)
        return std::nullopt;
    property->updateValueFromDevice();
    if (property->isUnread())
        return std::nullopt;
    return PGstCatalogue::describe(*property).value;
}

PStatus PGstCamera::setMode(const PDeviceMode& mode) {
    if (m_device == nullptr)
        return PStatus::failure(u"camera %1 was unplugged"_qs.arg(m_id));
    const PStatus status = m_device->setMode(mode);
    if (status.isOk())
        m_mode = mode;
    return status;
}

PStatus PGstCamera::apply(const QString& text) {
    PGstSettings settings;
    PStatus status = settings.read(text);
    if (status.isOk() && m_device != nullptr)
        status = settings.apply(*m_device);
    if (status.isOk())
        m_later.add(settings);
    return status;
}

PStatus PGstCamera::checkPlugged() const {
    if (m_options.onUnplug == PGstOptions::OnUnplug::Wait)
        return PStatus::Ok;
    if (m_device == nullptr)
        return PStatus::failure(u"camera %1 was unplugged"_qs.arg(m_id));
    return isPresent() ? PStatus(PStatus::Ok) : PStatus::failure(silence());
}

bool PGstCamera::isPresent() const {
    return m_device != nullptr && m_device->isAnswering();
}

/// That a camera was unplugged is known only about a second later, when the register looks.
QString PGstCamera::silence() const {
    return u"camera %1 does not answer: it was unplugged, or it hangs"_qs.arg(m_id);
}

PStatus PGstCamera::start() {
    m_isStarted = true;
    // Without a camera, the stream starts when it is plugged in.
    PStatus status = m_device != nullptr ? startStream() : checkPlugged();
    if (!status.isOk() && m_device != nullptr && !isPresent()) // no longer, but still in the list
        status = checkPlugged();
    if (!status.isOk())
        stop(); // else the queue would get each frame twice after the next start
    return status;
}

PStatus PGstCamera::startStream() {
    m_device->addFrameSink(m_queue);
    PStatus status = m_device->startStream();
    const bool fires = m_options.trigger == PGstOptions::Trigger::Software;
    if (status.isOk() && fires && m_options.triggerFrames > 0)
        status = fire(m_options.triggerFrames);
    return status.isOk() ? status
                         : PStatus::failure(u"camera %1: %2"_qs.arg(m_id, status.reason()));
}

PStatus PGstCamera::stop() {
    if (!std::exchange(m_isStarted, false) || m_device == nullptr)
        return PStatus::Ok;
    if (m_options.trigger == PGstOptions::Trigger::Software)
        fire(0); // else the rest of the run would come with the next stream
    const PStatus status = m_device->stopStream();
    m_device->removeFrameSink(m_queue);
    return status;
}

PStatus PGstCamera::fire(int frames) {
    if (m_device == nullptr)
        return PStatus::failure(u"camera %1 was unplugged"_qs.arg(m_id));
    if (m_options.trigger != PGstOptions::Trigger::Software || !m_trigger)
        return PStatus::failure(u"camera %1 is not triggered by software: expected "
                                "trigger=software"_qs.arg(m_id));
    if (frames < 0 || frames > PTriggerControl::endless)
        return PStatus::failure(
            u"camera %1 cannot be triggered for %2 frames: expected 0 to %3, or %4 for endlessly"_qs
                .arg(m_id, QString::number(frames), QString::number(PTriggerControl::endless - 1),
                     QString::number(PTriggerControl::endless)));
    return m_trigger->fire(frames);
}

void PGstCamera::onRemoved(PDevice* device) {
    if (device != m_device)
        return;
    device->removeFrameSink(m_queue);
    release();
    m_queue->report(Item::Kind::Unplugged, u"camera %1 was unplugged"_qs.arg(m_id));
}

/// The camera is back, under a new device.
void PGstCamera::onAdded(PDevice* device) {
    if (m_device != nullptr || m_options.onUnplug != PGstOptions::OnUnplug::Wait ||
        toId(device) != m_id)
        return;
    const Outcome outcome = link(device);
    PStatus status = outcome.code == Outcome::Code::Done ? PStatus(PStatus::Ok)
                                                         : PStatus::failure(outcome.reason);
    if (status.isOk() && m_isStarted)
        status = start();
    if (status.isOk()) {
        m_queue->report(Item::Kind::Plugged, u"camera %1 was plugged in again"_qs.arg(m_id));
        return;
    }
    const bool isGoneAgain = outcome.code != Outcome::Code::Busy && !isPresent();
    if (m_device != nullptr) {
        m_device->removeFrameSink(m_queue);
        m_device->unlink();
        release();
    }
    if (!isGoneAgain) // else it is waited for, as before
        m_queue->report(Item::Kind::Failed, status.reason());
}

#include "moc_PGstCamera.cpp"
