// SPDX-License-Identifier: MIT
#include <apps/pcdctl/camera/PCameraSession.h>

#include <apps/pcdctl/camera/PCameraSetup.h>
#include <apps/pcdctl/cli/PCtlOutput.h>

#include <PCore/PPrintableText.h>

#include <QScopeGuard>

#include <algorithm>

namespace {

// Frames wait only for this thread, so this timeout is reached only if something is broken.
constexpr std::chrono::seconds longestDrain(30);

// Longer than most exposures; --timeout is for the others.
constexpr std::chrono::seconds firstFrameTimeout(30);
constexpr std::chrono::seconds answerTimeout(10);

QString idAndName(const PDeviceMode& mode) {
    return PPrintableText::toLine(u"%1 (%2)"_qs.arg(QString::fromLatin1(mode.id), mode.name));
}

PCtlOutcome unknownMode(const QString& requested, const QList<PDeviceMode>& modes) {
    if (modes.isEmpty())
        return PCtlOutcome::failed(u"the camera does not answer: it reports no mode"_qs);
    QStringList known;
    for (const PDeviceMode& mode : modes)
        known.append(idAndName(mode));
    return PCtlOutcome::wrongUsage(u"the camera has no mode \"%1\": expected one of %2"_qs.arg(
        requested, known.join(u", "_qs)));
}

PCtlOutcome failedUnlessOk(const PStatus& status) {
    return status.isOk() ? PCtlOutcome() : PCtlOutcome::failed(status.reason());
}

} // namespace

PCameraSession::PCameraSession(PDeviceManager& manager, PDevice* device)
    : m_device(device)
    , m_id(PPrintableText::toLine(QString::fromUtf8(device->deviceId(false)))) {
    connect(&manager, &PDeviceManager::deviceRemoved, this, [this](PDevice* removed) {
        if (removed != m_device)
            return;
        // The device is about to be deleted, so its ledger is read now.
        m_lastLedger = m_device->frameLedger();
        m_device = nullptr;
    });
    // Nothing removes a device that its plugin deletes.
    connect(device, &QObject::destroyed, this, [this] { m_device = nullptr; });
}

PCameraSession::~PCameraSession() {
    close();
}

PCtlOutcome PCameraSession::open(const PCtlOptions& options) {
    PCtlOutcome outcome = failedUnlessOk(m_device->link());
    if (outcome.isDone()) {
        // The list is built when first read; only then do frames carry settings, and roles can be
        // found.
        m_device->supportProperties();
        outcome = prepare(options);
    }
    if (m_device != nullptr)
        m_mode = m_device->reportedMode();
    return outcome;
}

PCtlOutcome PCameraSession::prepare(const PCtlOptions& options) {
    if (!options.mode.isEmpty()) {
        const PCtlOutcome outcome = setMode(options.mode);
        if (!outcome.isDone())
            return outcome;
    }
    return PCameraSetup(*this, options).run();
}

PCtlOutcome PCameraSession::setMode(const QString& requested) {
    QList<PDeviceMode> modes;
    const PStatus read = m_device->readModes(modes);
    if (!read.isOk())
        return readOutcome(read);
    const auto mode = std::find_if(modes.begin(), modes.end(), [&](const PDeviceMode& m) {
        return QString::fromLatin1(m.id) == requested || m.name == requested;
    });
    return mode == modes.end() ? unknownMode(requested, modes)
                               : failedUnlessOk(m_device->setMode(*mode));
}

void PCameraSession::watchExposure() {
    m_exposure = std::make_unique<PExposureWatch>(m_device);
}

PStatus PCameraSession::close() {
    const PStatus stopped = stopLive();
    m_exposure.reset();
    if (m_device != nullptr)
        m_device->unlink();
    return stopped;
}

PCtlOutcome PCameraSession::startLive(std::optional<std::chrono::milliseconds> atMost) {
    using std::chrono::steady_clock;
    bool isLive = false;
    const auto connection =
        connect(m_device, &PDevice::imageChanged, this, [&isLive] { isLive = true; });
    const auto forget = qScopeGuard([&] { disconnect(connection); });
    const auto start = steady_clock::now();
    const PStatus started = m_device->startStream();
    if (!started.isOk())
        return PCtlOutcome::failed(started.reason());
    if (!waitFor([&isLive] { return isLive; }, atMost.value_or(firstFrameTimeout)))
        return PCtlOutcome::failed(reasonWithout(u"the first live frame"_qs));
    m_firstFrameTook = std::chrono::ceil<std::chrono::milliseconds>(steady_clock::now() - start);
    return {};
}

PStatus PCameraSession::stopLive() {
    const PStatus stopped = m_device != nullptr ? m_device->stopStream() : PStatus(PStatus::Ok);
    m_loop.drain([this] { return isUnplugged() || m_device->frameLedger().waiting == 0; },
                 longestDrain);
    return stopped;
}

std::chrono::milliseconds PCameraSession::longestAnswer() const {
    // If a live frame takes long to expose, everything else may take several times as long.
    return answerTimeout + 4 * m_firstFrameTook;
}

PFrameLedger PCameraSession::ledger() const {
    return m_device != nullptr ? m_device->frameLedger() : m_lastLedger;
}

bool PCameraSession::waitFor(const std::function<bool()>& predicate,
                             std::optional<std::chrono::milliseconds> atMost) {
    bool holds = false;
    m_loop.waitFor(
        [&] {
            holds = !isUnplugged() && predicate();
            return holds || isUnplugged();
        },
        atMost);
    return holds;
}

QString PCameraSession::losses() const {
    const PFrameLedger frames = ledger();
    QStringList texts;
    for (const PFrameOutcome outcome : PFrameLedger::allOutcomes()) {
        const bool isLoss =
            outcome != PFrameOutcome::Delivered && outcome != PFrameOutcome::NotRequested;
        if (isLoss && frames.count(outcome) > 0)
            texts.append(PCtlOutput::toFrames(frames.count(outcome)) + u' ' +
                         PFrameLedger::title(outcome));
    }
    return texts.join(u", "_qs);
}

PCtlOutcome PCameraSession::readOutcome(const PStatus& read) const {
    if (read.isOk())
        return {};
    if (isUnplugged() || !m_device->isAnswering())
        return PCtlOutcome::failed(
            u"camera %1 no longer answers: it was unplugged, or it hangs"_qs.arg(m_id));
    return PCtlOutcome::failed(u"camera %1: %2"_qs.arg(m_id, read.reason()));
}

QString PCameraSession::reasonWithout(const QString& what) const {
    if (isUnplugged())
        return u"camera %1 was unplugged before %2 arrived"_qs.arg(m_id, what);
    if (m_loop.isInterrupted())
        return u"interrupted before %1 arrived"_qs.arg(what);
    const QString lost = losses();
    return lost.isEmpty() ? u"camera %1 did not send %2 in time"_qs.arg(m_id, what)
                          : u"%1 of camera %2 did not arrive in time: %3"_qs.arg(what, m_id, lost);
}

#include "moc_PCameraSession.cpp"
