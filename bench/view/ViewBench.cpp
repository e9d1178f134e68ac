// SPDX-License-Identifier: MIT
#include <view/ViewBench.h>

#include <view/PlainWrite.h>
#include <view/RestlessHand.h>
#include <view/StallProbe.h>
#include <view/Viewer.h>

#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/capture/PCaptureFolder.h>
#include <apps/pcdview/view/PImageView.h>

#include <QAction>
#include <QDir>
#include <QElapsedTimer>
#include <QLabel>
#include <QTimer>

#include <cstdio>

namespace {

constexpr QSize noCamera;
constexpr QSize smallSensor(1216, 816); // 1 megapixel, of nearly the same shape
constexpr QSize largeSensor(5440, 3648);
constexpr double framesASecond = 30;
constexpr std::chrono::minutes patience(10);

/// Enough to load the disk, and little enough for a folder of temporary files.
PRecordSettings everyFrame() {
    PRecordSettings settings;
    settings.frames = 40;
    return settings;
}

PRecordSettings timeLapse() {
    PRecordSettings settings;
    settings.frames = 40;
    settings.isTimeLapse = true;
    settings.intervalSeconds = 0.2;
    return settings;
}

qint64 bytesIn(const QString& folder) {
    qint64 bytes = 0;
    for (const QFileInfo& file : QDir(folder).entryInfoList(QDir::Files))
        bytes += file.size();
    return bytes;
}

QString outcomeIn(const Viewer& viewer) {
    const auto* const text = qobject_cast<QLabel*>(viewer.widget(u"recordText"_qs));
    return text == nullptr ? QString() : text->text();
}

} // namespace

ViewBench::ViewBench(TimedApplication& application, QString folder, double seconds)
    : m_application(application)
    , m_folder(std::move(folder))
    , m_seconds(seconds) {
}

PStatus ViewBench::run() {
    PStatus status = watchIdle();
    if (status.isOk())
        status = watchSmall();
    if (status.isOk())
        status = watchLarge();
    if (status.isOk())
        status = record(u"live and a time-lapse of 0.2 s"_qs, timeLapse());
    if (status.isOk())
        status = record(u"live and recording every frame"_qs, everyFrame());
    return status;
}

PStatus ViewBench::watchIdle() {
    Viewer viewer;
    const PStatus status = viewer.start(m_folder, noCamera);
    if (status.isOk())
        m_figures.phases.append(measureForAWhile(u"window without a camera"_qs, viewer));
    return status;
}

PStatus ViewBench::watchSmall() {
    Viewer viewer;
    const PStatus status = viewer.start(m_folder, smallSensor);
    if (!status.isOk())
        return status;
    m_figures.phases.append(measureForAWhile(u"1 megapixel live"_qs, viewer));
    m_figures.smallPaints = m_figures.phases.last().events.paints;
    settle(u"1 megapixel"_qs, viewer);
    return status;
}

PStatus ViewBench::watchLarge() {
    Viewer viewer;
    const PStatus status = viewer.start(m_folder, largeSensor);
    if (!status.isOk())
        return status;
    m_figures.phases.append(measureForAWhile(u"20 megapixels live"_qs, viewer));
    m_figures.largePaints = m_figures.phases.last().events.paints;
    {
        const RestlessHand hand(*viewer.view());
        m_figures.phases.append(measureForAWhile(u"live, dragged and zoomed"_qs, viewer));
    }
    settle(u"20 megapixels"_qs, viewer);
    return status;
}

PStatus ViewBench::record(const QString& name, const PRecordSettings& settings) {
    const QString folder = m_folder + u"/recording"_qs;
    PCaptureFolder::setPath(folder);
    settings.remember();
    Viewer viewer;
    const PStatus status = viewer.start(m_folder, largeSensor);
    if (!status.isOk())
        return status;
    PlainWrite::settle(m_folder);
    RecordingFigures recording;
    recording.name = name;
    recording.wanted = settings.frames;
    recording.pace = settings.isTimeLapse ? 1 / settings.intervalSeconds : framesASecond;
    recording.frameBytes = qint64(3) * largeSensor.width() * largeSensor.height();
    QAction* const switchOn = viewer.action(u"record"_qs);
    // In the event loop, where the user would press it, because starting is part of the
    // measurement.
    QTimer::singleShot(0, switchOn, &QAction::trigger);
    m_figures.phases.append(measure(name, viewer, [=] { return !switchOn->isChecked(); }));
    recording.seconds = m_figures.phases.last().seconds;
    recording.outcome = outcomeIn(viewer);
    recording.bytes = bytesIn(folder);
    settle(name, viewer);
    QDir(folder).removeRecursively();
    recording.plainSeconds = PlainWrite::seconds(m_folder, recording.bytes);
    m_figures.recordings.append(recording);
    return status;
}

PhaseFigures ViewBench::measureForAWhile(const QString& name, Viewer& viewer) {
    QElapsedTimer timer;
    timer.start();
    return measure(name, viewer, [&] { return double(timer.elapsed()) >= m_seconds * 1000; });
}

PhaseFigures ViewBench::measure(const QString& name, Viewer& viewer,
                                const std::function<bool()>& isDone) {
    std::fprintf(stderr, "%s …\n", name.toUtf8().constData());
    PhaseFigures phase;
    phase.name = name;
    PViewCamera* const camera = viewer.camera();
    phase.hasCamera = camera != nullptr;
    const PFrameLedger before = phase.hasCamera ? camera->ledger() : PFrameLedger();
    QObject counter;
    if (phase.hasCamera)
        QObject::connect(camera, &PViewCamera::frameChanged, &counter, [&] { ++phase.shown; });
    m_application.takeTimes();
    QElapsedTimer timer;
    timer.start();
    const CoreTime core = CoreTime::ofThisThread();
    StallProbe probe;
    runUntil(isDone, patience);
    phase.seconds = double(timer.nsecsElapsed()) / 1e9;
    phase.core = CoreTime::ofThisThread() - core;
    phase.events = m_application.takeTimes();
    phase.late = probe.finish();
    if (phase.hasCamera) {
        phase.delivered = camera->ledger().count(PFrameOutcome::Delivered) -
                          before.count(PFrameOutcome::Delivered);
    }
    return phase;
}

void ViewBench::settle(const QString& name, Viewer& viewer) {
    m_figures.ledgers.append({name, viewer.stopAndSettle()});
}
