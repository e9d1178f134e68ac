// SPDX-License-Identifier: MIT
#include <PCd/device/PDevice.h>

#include <PCd/PMetaTypes.h>
#include <PCd/device/PDeviceIdClaim.h>
#include <PCd/device/PStampedValues.h>
#include <PCd/frame/PFramePipeline.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PDevicePropertyGroup.h>
#include <PCd/property/PReadWatch.h>
#include <PCd/property/PWidgetFactory.h>

#include <PDip/PBufferPool.h>

#include <PLog/PLog.h>

#include <QCoreApplication>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <exception>

namespace {

constexpr std::chrono::seconds frameMemoryDelay(5);

/// Text from a device's bytes, which may be padded with zeros.
QString trimmedText(const QByteArray& bytes) {
    return QString::fromLatin1(
        bytes.left(bytes.indexOf('\0') < 0 ? bytes.size() : bytes.indexOf('\0')));
}

PStatus goneFailure() {
    return PStatus::failure(PDevice::tr("the device is gone"));
}

PStatus failedUnless(bool done, const QString& reason) {
    return done ? PStatus(PStatus::Ok) : PStatus::failure(reason);
}

/// Without a stream, unused frame memory is returned to the system. Some is freed only when the
/// queued frames have been delivered, so this is repeated a little later.
void giveFrameMemoryBack() {
    const auto trim = [] { PBufferPool::instance().trim(); };
    trim();
    if (QCoreApplication* const application = QCoreApplication::instance())
        QTimer::singleShot(frameMemoryDelay, application, trim);
}

void logThrown(const char* reason) {
    PLog::logStream(u"PCd"_qs, QString::fromLatin1(Q_FUNC_INFO), QString::fromLatin1(__FILE__),
                    __LINE__, PLogLevel::Error)
        << "The end of a device failed:" << reason;
}

/// Whatever the plugin throws: what follows must be done too.
template <typename Call>
void attemptEnd(const Call& call) {
    try {
        call();
    } catch (const std::exception& error) {
        logThrown(error.what());
    } catch (...) {
        logThrown("unknown exception");
    }
}

} // namespace

PDevice::PDevice(QObject* parent)
    : PImageSource(parent)
    , m_idClaim(std::make_unique<PDeviceIdClaim>()) {
    registerPCdMetaTypes();
    const auto deliver = [this](const PFrameHandoff::Entry& entry) {
        if (entry.kind == PFrameSink::Kind::Snapshot)
            emit snapshotTaken(entry.frame);
        else
            emit imageChanged(entry.frame.image);
    };
    m_frames = std::make_unique<PFramePipeline>(this, deliver, defaultFrameByteLimit);
}

PDevice::~PDevice() = default;

QString PDevice::model() const {
    return trimmedText(getModel());
}

QString PDevice::serial() const {
    return trimmedText(getSerial());
}

bool PDevice::isSupportSoftwareTrigger() {
    return false;
}

bool PDevice::isGigE() {
    return false;
}

bool PDevice::isLinked() const {
    return m_linked;
}

bool PDevice::isInitialized() const {
    return m_propertiesTaken;
}

bool PDevice::isStreaming() const {
    return m_streaming;
}

bool PDevice::isRealDevice() const {
    return true;
}

QWidget* PDevice::createPropertiesWidget(QWidget* parent) {
    return PWidgetFactory::createDevicePanel(this, parent);
}

bool PDevice::isSequence() const {
    return false;
}

bool PDevice::isPhotoDevice() const {
    return false;
}

bool PDevice::isSupportStillCapture() const {
    return false;
}

bool PDevice::canProcessImage() const {
    return m_processImage;
}

bool PDevice::isEqualSessionInfo(const PDevice* other) const {
    return other != nullptr && model() == other->model() && serial() == other->serial();
}

PImage PDevice::getSnapshot() {
    return PImage();
}

bool PDevice::enableHistogram() const {
    return true;
}

bool PDevice::triggerStillCapture() {
    return false;
}

bool PDevice::tryFireSoftwareTrigger() {
    return false;
}

bool PDevice::tryPollForTriggerReady() {
    return false;
}

QByteArray PDevice::deviceId(bool withRegister) const {
    const QByteArray id = m_idClaim->id([this] {
        const QStringList parts{model(), serial()};
        const QString name = parts.join(u'-');
        return (serial().isEmpty() ? model() : name).toUtf8();
    });
    return withRegister && !m_registerId.isEmpty() ? m_registerId + '/' + id : id;
}

PStatus PDevice::link() {
    if (m_gone)
        return goneFailure();
    if (m_linked)
        return PStatus::Ok;
    m_linked = tryLink();
    return failedUnless(m_linked, tr("the device refused to be linked"));
}

PStatus PDevice::unlink() {
    if (!m_linked)
        return PStatus::Ok;
    stopStream();
    // The result is ignored: the host no longer uses the device.
    m_linked = false; // before, because the plugin may throw
    const bool done = tryUnlink();
    emit unlinked(deviceId(false));
    return failedUnless(done, tr("the device refused to be unlinked"));
}

PStatus PDevice::startStream() {
    if (m_gone)
        return goneFailure();
    if (!m_linked)
        return PStatus::failure(tr("the device is not linked"));
    if (m_streaming)
        return PStatus::failure(tr("the stream is already running"));
    // Until it stops, the device would refuse to start again, however often it is linked.
    if (m_stopRefused)
        m_stopRefused = !tryStopStream();
    updateMode();
    m_streaming = tryStartStream();
    return failedUnless(m_streaming, tr("the device refused to start its stream"));
}

PStatus PDevice::stopStream() {
    if (!m_streaming)
        return PStatus::Ok;
    m_streaming = false;
    m_stopRefused = true; // also if the plugin throws
    m_stopRefused = !tryStopStream();
    giveFrameMemoryBack();
    return failedUnless(!m_stopRefused, tr("the device refused to stop its stream"));
}

PStatus PDevice::setMode(const PDeviceMode& mode) {
    if (m_gone)
        return goneFailure();
    if (!trySetMode(mode))
        return PStatus::failure(tr("the device refused the mode %1").arg(mode.name));
    updateMode();
    emit modeChanged(m_mode);
    return PStatus::Ok;
}

void PDevice::retire() {
    attemptEnd([this] { stopStream(); });
    if (m_linked)
        attemptEnd([this] { tryUnlink(); });
    m_linked = false;
    m_gone = true;
    // Emitted even if the host never linked the device: panels use a device from its construction
    // on, and stop using it at this signal.
    emit unlinked(deviceId(false));
    m_idClaim->release();
}

bool PDevice::isAnswering() {
    if (m_gone)
        return false;
    const PReadWatch watch;
    return !getSupportModes().isEmpty() || (!m_hadModes && !watch.hasFailed());
}

PDeviceProperty* PDevice::getProperty(const QByteArray& id) const {
    const auto found = std::find_if(m_properties.begin(), m_properties.end(),
                                    [&](const PDeviceProperty* p) { return p->id() == id; });
    return found == m_properties.end() ? nullptr : *found;
}

const QList<PDeviceProperty*>& PDevice::supportProperties() {
    if (!m_propertiesTaken)
        takeProperties();
    return m_properties;
}

void PDevice::takeProperties() {
    m_properties = getSupportProperties();
    m_properties.removeAll(nullptr); // of what a plugin could not make
    m_propertiesTaken = true;
    for (PDeviceProperty* property : std::as_const(m_properties)) {
        property->setParent(this);
        property->m_device = this;
        property->readAtFirst();
    }
    PStampedValues::follow(*this, m_properties, *m_frames, [this] { updateSettings(); });
}

const QList<PDevicePropertyGroup*>& PDevice::supportPropertyGroups() {
    supportProperties(); // groups find their members in this list
    if (!m_groupsTaken) {
        m_groups = getSupportPropertyGroups();
        m_groups.removeAll(nullptr);
        m_groupsTaken = true;
        for (PDevicePropertyGroup* group : std::as_const(m_groups))
            group->setParent(this);
    }
    return m_groups;
}

PDeviceMode PDevice::reportedMode() {
    const PReadWatch watch;
    const PDeviceMode mode = getCurrentMode();
    return watch.hasFailed() ? PDeviceMode() : mode;
}

PStatus PDevice::readModes(QList<PDeviceMode>& modes) {
    const PReadWatch watch;
    modes = getSupportModes();
    if (!watch.hasFailed())
        return PStatus::Ok;
    modes.clear();
    return PStatus::failure(tr("the camera did not report its modes"));
}

void PDevice::updateMode() {
    m_mode = reportedMode();
    updateSettings();
}

/// The mode is that of the last updateMode(): reading it takes several calls to the device.
void PDevice::updateSettings() {
    auto settings = PStampedValues::read(m_properties);
    settings->mode = m_mode;
    m_frames->setSettings(std::move(settings));
}

void PDevice::setDeviceOption(PCD::DeviceOption option, bool on) {
    m_options = on ? m_options | int(option) : m_options & ~int(option);
}

bool PDevice::hasDeviceOption(PCD::DeviceOption option) const {
    return (m_options & int(option)) != 0;
}

void PDevice::processFrameImage(const PImage& image) noexcept {
    m_frames->sendLive(image);
}

void PDevice::processSnapshot(PDeviceFrame frame) noexcept {
    m_frames->sendSnapshot(std::move(frame));
}

void PDevice::reportDroppedFrames(PFrameOutcome outcome, quint64 count) {
    m_frames->counters().enterAndSettle(outcome, count);
}

void PDevice::addFrameSink(std::shared_ptr<PFrameSink> sink) {
    m_frames->addSink(std::move(sink));
}

void PDevice::removeFrameSink(const std::shared_ptr<PFrameSink>& sink) {
    m_frames->removeSink(sink);
}

void PDevice::limitLiveFrames(std::optional<quint64> count) {
    m_frames->limitLive(count);
}

PDeviceFrame PDevice::newestFrame() const {
    return m_frames->newestFrame();
}

PFrameLedger PDevice::frameLedger() const {
    return m_frames->counters().ledger();
}

void PDevice::setFrameByteLimit(std::size_t bytes) {
    m_frames->setByteLimit(bytes);
}

#include "moc_PDevice.cpp"
