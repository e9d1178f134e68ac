// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/actions/PRecordController.h>

#include <apps/pcdview/camera/PFrameSizeChange.h>
#include <apps/pcdview/capture/PRecordings.h>
#include <apps/pcdview/window/camera/PCameraPage.h>
#include <apps/pcdview/window/camera/PCameraTabs.h>
#include <apps/pcdview/window/panels/PDockPanels.h>
#include <apps/pcdview/window/panels/PRecordPanel.h>

#include <QAction>
#include <QMessageBox>
#include <QSignalBlocker>

namespace {

constexpr std::chrono::milliseconds unnoticed(200); // shorter than it takes to read a message

} // namespace

PRecordController::PRecordController(QAction* record, PCameraTabs& tabs, PDockPanels& panels,
                                     PRecordings& recordings, QWidget* window)
    : QObject(window)
    , m_record(record)
    , m_tabs(tabs)
    , m_panels(panels)
    , m_recordings(recordings)
    , m_window(window) {
    connect(record, &QAction::toggled, this, [this](bool on) { on ? start() : stopOnRequest(); });
    connect(panels.record, &PRecordPanel::startRequested, this, &PRecordController::start);
    connect(&recordings, &PRecordings::changed, this, &PRecordController::showState);
    connect(&recordings, &PRecordings::finished, this,
            [this](const QString& camera, const QString& message) {
                emit messageChanged(camera + u": "_qs + message);
            });
    connect(&tabs, &PCameraTabs::currentPageChanged, this, &PRecordController::showState);
}

void PRecordController::start() {
    const PCameraPage& page = *m_tabs.currentPage();
    PViewCamera& camera = page.camera();
    const PRecordSettings settings = m_panels.record->settings();
    settings.remember();
    const PStatus status = m_recordings.start(camera, settings, page.pixelSizeOfPicture());
    const QString message = status.isOk()
                                ? tr("Recording to %1").arg(m_recordings.of(&camera)->path())
                                : tr("Recording not started: %1").arg(status.reason());
    emit messageChanged(message);
    if (!status.isOk())
        m_panels.record->showMessage(camera.identity().id, message);
    m_panels.showProgress();
    showState();
}

/// A key is easily pressed by mistake, and frames that are not recorded are lost.
void PRecordController::stopOnRequest() {
    const QPointer<PRecording> recording = m_recordings.of(&m_tabs.currentPage()->camera());
    const bool isMeant = recording != nullptr && confirmsStop(*recording);
    if (isMeant && recording != nullptr) // it may have ended while the question was open
        recording->stop();
    showState();
}

/// The question closes when the recording takes no more frames: there is nothing left to stop.
bool PRecordController::confirmsStop(PRecording& recording) {
    QMessageBox question(QMessageBox::Question, tr("Recording"),
                         tr("Stop the recording of %1?").arg(recording.cameraId()),
                         QMessageBox::Yes | QMessageBox::No, m_window);
    question.setDefaultButton(QMessageBox::No);
    connect(&recording, &PRecording::finished, &question, &QDialog::reject);
    connect(&recording, &PRecording::changed, &question, [&] {
        if (recording.progress().isOver)
            question.reject();
    });
    return question.exec() == QMessageBox::Yes;
}

/// The question, which has a %1 for them, names the recordings that still run, and closes when none
/// is left: the user sees how they ended, and decides again whether to do what would end them.
bool PRecordController::confirmsEnd(QList<PRecording*> recordings, const QString& question) {
    QMessageBox box(QMessageBox::Question, tr("Recording"), question.arg(toNames(recordings)),
                    QMessageBox::Yes | QMessageBox::No, m_window);
    box.setDefaultButton(QMessageBox::No);
    const auto follow = [&](PRecording* ended) {
        recordings.removeOne(ended);
        if (!recordings.isEmpty())
            box.setText(question.arg(toNames(recordings)));
        else if (box.isVisible()) // not if the user has just said Yes
            box.reject();
    };
    for (PRecording* const recording : QList(recordings))
        connect(recording, &PRecording::finished, &box, [=] { follow(recording); });
    return box.exec() == QMessageBox::Yes;
}

QString PRecordController::toNames(const QList<PRecording*>& recordings) {
    QStringList cameras;
    for (const PRecording* recording : recordings)
        cameras.append(recording->cameraId());
    return cameras.join(u", "_qs);
}

QString PRecordController::closeQuestion() {
    return tr("Recording in progress: %1. Stop recording and close?");
}

bool PRecordController::mayCloseWindow() {
    return m_recordings.running().isEmpty() || confirmsEnd(m_recordings.running(), closeQuestion());
}

bool PRecordController::mayEnd(const PViewCamera& camera, const QString& question) {
    PRecording* const recording = m_recordings.of(&camera);
    // One that takes no more frames loses none.
    return recording == nullptr || recording->progress().isOver ||
           confirmsEnd({recording}, question);
}

bool PRecordController::mayStopLive(const PViewCamera& camera) {
    return mayEnd(camera, tr("Recording in progress: %1. Stop recording and the live picture?"));
}

/// Ends the recording itself: its writer could only report that it cannot save such a frame.
bool PRecordController::mayResize(const PViewCamera& camera, const QString& question) {
    if (!mayEnd(camera, question))
        return false;
    if (PRecording* const recording = m_recordings.of(&camera))
        recording->endAsFramesChange();
    return true;
}

bool PRecordController::mayChangeMode(const PViewCamera& camera) {
    return mayResize(camera,
                     tr("Recording in progress: %1. Stop recording and change the resolution?"));
}

bool PRecordController::mayChangeRegion(const PViewCamera& camera) {
    return mayResize(camera,
                     tr("Recording in progress: %1. Stop recording and change the region?"));
}

bool PRecordController::mayChangeSetting(const PViewCamera& camera, const PDeviceProperty& property,
                                         const QVariant& value) {
    if (const auto role = PFrameSizeChange::byValue(property, value)) {
        switch (*role) {
        case PRole::Binning:
            return mayResize(
                camera, tr("Recording in progress: %1. Stop recording and change the binning?"));
        case PRole::Rotation:
            return mayResize(
                camera, tr("Recording in progress: %1. Stop recording and rotate the picture?"));
        default:
            return mayChangeRegion(camera);
        }
    }
    return true;
}

bool PRecordController::mayLoadProfile(const PViewCamera& camera, const PDeviceProfile& profile) {
    return camera.device() == nullptr || !PFrameSizeChange::byProfile(*camera.device(), profile) ||
           mayResize(camera, tr("Recording in progress: %1. Stop recording and load the profile?"));
}

bool PRecordController::finishFiles() {
    QMessageBox box(QMessageBox::Information, tr("Recording"), {}, QMessageBox::Cancel, m_window);
    bool hasFailed = false;
    connect(&m_recordings, &PRecordings::finished, &box,
            [&](const QString&, const QString&, bool failed) { hasFailed |= failed; });
    const auto show = [&] {
        box.setText(tr("Frames still to be written: %1. After the last one, the window closes.")
                        .arg(m_recordings.waiting()));
        // The last one may end right after the user has cancelled: then the window stays.
        if (m_recordings.running().isEmpty() && box.isVisible())
            box.accept();
    };
    connect(&m_recordings, &PRecordings::changed, &box, show);
    m_recordings.endAsProgramCloses();
    m_recordings.finishWithin(unnoticed);
    show();
    const bool isComplete = m_recordings.running().isEmpty() || box.exec() == QDialog::Accepted;
    return isComplete && !hasFailed;
}

bool PRecordController::endForClosing(const PCameraPage& page) {
    const QPointer<PRecording> recording = m_recordings.of(&page.camera());
    if (recording != nullptr && !confirmsEnd({recording}, closeQuestion()))
        return false;
    // While its camera can still account for the frames.
    if (recording != nullptr)
        recording->endAsCameraCloses();
    return true;
}

void PRecordController::showState() {
    const PCameraPage* const page = m_tabs.currentPage();
    const PViewCamera* const camera = page == nullptr ? nullptr : &page->camera();
    const QSignalBlocker quiet(m_record);
    m_record->setChecked(m_recordings.of(camera) != nullptr);
}

#include "moc_PRecordController.cpp"
