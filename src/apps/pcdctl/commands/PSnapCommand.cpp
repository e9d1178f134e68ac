// SPDX-License-Identifier: MIT
#include <apps/pcdctl/camera/PCameraSession.h>
#include <apps/pcdctl/camera/PCtlHost.h>
#include <apps/pcdctl/cli/PCtlOutput.h>
#include <apps/pcdctl/commands/PCtlCommands.h>

#include <apps/common/picture/PPictureFile.h>

#include <PCd/frame/PFrameStamp.h>

#include <QFileInfo>

namespace {

/// Takes one still.
class PSnapRun {
public:
    PSnapRun(PCtlHost& host, PDevice* device)
        : m_session(host.manager(), device) {}

    PCtlOutcome takePicture(const PCtlOptions& options) {
        PCtlOutcome outcome = m_session.open(options);
        if (outcome.isDone())
            outcome = startStream(options);
        if (outcome.isDone())
            outcome = takeStill(options);
        m_session.close();
        return outcome;
    }

    const PDeviceFrame& picture() const { return m_picture; }
    const PDeviceMode& mode() const { return m_session.mode(); }

private:
    /// Starts the stream and waits for its first frame: stills can only be taken during a stream.
    PCtlOutcome startStream(const PCtlOptions& options) {
        PDevice* const device = m_session.device();
        QObject::connect(device, &PDevice::snapshotTaken, &m_session,
                         [this](const PDeviceFrame& frame) { m_picture = frame; });
        m_session.watchExposure();
        return m_session.startLive(options.timeout);
    }

    PCtlOutcome takeStill(const PCtlOptions& options) {
        if (!m_session.device()->triggerStillCapture())
            return PCtlOutcome::failed(u"the camera refused to take a still"_qs);
        const auto atMost = options.timeout.value_or(m_session.longestAnswer());
        if (!m_session.waitFor([this] { return !m_picture.image.isNull(); }, atMost))
            return PCtlOutcome::failed(m_session.reasonWithout(u"a still"_qs));
        return {};
    }

    PDeviceFrame m_picture;
    PCameraSession m_session; // destroyed first: frames that still arrive use the rest
};

void printJson(const QString& file, const PCameraIdentity& camera, const PSnapRun& run) {
    QJsonObject object = PCtlOutput::toJson(camera);
    object.remove(u"id"_qs);
    object.insert(u"camera"_qs, camera.id);
    object.insert(u"file"_qs, file);
    object.insert(u"width"_qs, qint64(run.picture().image.width()));
    object.insert(u"height"_qs, qint64(run.picture().image.height()));
    object.insert(u"mode"_qs, PCtlOutput::toValue(run.mode().name));
    object.insert(u"time"_qs, run.picture().stamp->arrivedUtc.toString(Qt::ISODateWithMs));
    PCtlOutput::printDocument(object);
}

void printText(const QString& saved, const PCameraIdentity& camera, const PSnapRun& run) {
    PCtlOutput::printLine(u"%1: %2 x %3 pixels, camera %4%5"_qs.arg(
        saved, QString::number(run.picture().image.width()),
        QString::number(run.picture().image.height()), camera.id,
        camera.simulated ? u" (simulated)"_qs : QString()));
}

} // namespace

PCtlOutcome prepareSnapFiles(const PCtlOptions& options) {
    const PStatus status = PPictureFile::prepareFolder(options.output);
    return status.isOk() ? PCtlOutcome() : PCtlOutcome::failed(status.reason());
}

PCtlOutcome runSnapCommand(PCtlHost& host, const PCtlOptions& options) {
    const PCtlHost::Choice choice = host.choose(options.camera);
    if (choice.device == nullptr)
        return choice.outcome;
    const PCameraIdentity camera = host.identify(choice.device);
    PSnapRun run(host, choice.device);
    const PCtlOutcome outcome = run.takePicture(options);
    if (!outcome.isDone())
        return outcome;
    const PDeviceFrame& picture = run.picture();
    const PStatus saved =
        PPictureFile::save(options.output, picture.image.toQImage(),
                           PPictureNotes::of(camera, picture.stamp.get(), options.pixelSizeUm),
                           PPictureFile::Existing::Replace, PPictureFile::Content::Frame);
    if (!saved.isOk())
        return PCtlOutcome::failed(saved.reason());
    const QString file = QFileInfo(options.output).absoluteFilePath();
    if (options.json)
        printJson(file, camera, run);
    else
        printText(PCtlOutput::toSaved(file, options.keepsFiles), camera, run);
    return {};
}
