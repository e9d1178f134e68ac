// SPDX-License-Identifier: MIT
#include <view/Viewer.h>

#include <apps/pcdview/PViewProgram.h>
#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/capture/PCaptureFolder.h>
#include <apps/pcdview/capture/PRecordSettings.h>
#include <apps/pcdview/window/camera/PCameraPage.h>
#include <apps/pcdview/window/camera/PCameraTabs.h>
#include <apps/pcdview/window/main/PMainWindow.h>

#include <toupcam/sim/api/toupcamsim.h>

#include <QAction>
#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QSettings>
#include <QStorageInfo>
#include <QTimer>

#include <dlfcn.h>

#include <stdexcept>

namespace {

constexpr int lookEveryMs = 5;
constexpr std::chrono::seconds patience(60);
constexpr quint64 warmUpFrames = 10; // until the memory for frames has been touched
constexpr qint64 roomForRecordings = 10'000'000'000;

[[noreturn]] void complain(const QString& reason) {
    throw std::runtime_error(reason.toStdString());
}

void expect(const PStatus& status) {
    if (!status.isOk())
        complain(status.reason());
}

void waitFor(const QString& what, const std::function<bool()>& predicate) {
    if (!runUntil(predicate, patience))
        complain(u"waited in vain for "_qs + what);
}

/// The disk should not be what limits a recording.
QString findFolder() {
    const QStorageInfo memory(u"/dev/shm"_qs);
    const bool isLarge = memory.isValid() && memory.bytesAvailable() > roomForRecordings;
    return isLarge ? memory.rootPath() : QDir::tempPath();
}

QJsonObject makeCamera(const Viewer::Sensor& sensor) {
    const QJsonObject resolution{{u"width"_qs, sensor.size.width()},
                                 {u"height"_qs, sensor.size.height()},
                                 {u"fps"_qs, sensor.framesASecond}};
    return {{u"id"_qs, sensor.name},
            {u"model"_qs, u"Simulated"_qs},
            {u"serial"_qs, sensor.name},
            {u"flags"_qs, QJsonArray{u"USB30"_qs}},
            {u"resolutions"_qs, QJsonArray{resolution}},
            {u"exposure"_qs, QJsonObject{{u"default"_qs, 5000}, {u"auto"_qs, false}}},
            {u"source"_qs, QJsonObject{{u"kind"_qs, u"ring"_qs}, {u"frames"_qs, 2}}}};
}

void writeScene(const QString& path) {
    const QJsonArray cameras{makeCamera(Viewer::small()), makeCamera(Viewer::large()),
                             makeCamera(Viewer::largest())};
    const QByteArray scene = QJsonDocument(QJsonObject{{u"cameras"_qs, cameras}}).toJson();
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(scene) != scene.size())
        complain(file.errorString());
}

PViewOptions optionsFor(const QString& scene) {
    PViewOptions options;
    options.sdk = u"sim"_qs;
    options.scene = scene;
    options.language = u"en"_qs;
    options.logFilter = u"warning,qt=error"_qs; // the offscreen platform warns of missing features
    return options;
}

qint64 bytesIn(const QString& folder) {
    qint64 bytes = 0;
    for (const QFileInfo& file : QDir(folder).entryInfoList(QDir::Files))
        bytes += file.size();
    return bytes;
}

/// What a camera has counted since its stream began.
struct CameraCounts {
    unsigned long long due = 0;
    unsigned long long delivered = 0;
};

/// Asks the simulated SDK, which the program has loaded at run time.
CameraCounts readCounts(const QString& camera) {
    static void* const sdk = dlopen(qgetenv("TOUPCAM_LIBRARY").constData(), RTLD_NOW | RTLD_NOLOAD);
    static const auto read = reinterpret_cast<decltype(&ToupcamSim_frameCount)>(
        sdk == nullptr ? nullptr : dlsym(sdk, "ToupcamSim_frameCount"));
    CameraCounts counts;
    if (read == nullptr || read(qPrintable(camera), &counts.due, &counts.delivered) == 0)
        complain(u"the simulated camera does not count"_qs);
    return counts;
}

/// The window's message about the recording.
QString findOutcome(const QWidget& window) {
    const auto* const text = window.findChild<QLabel*>(u"recordText"_qs);
    return text == nullptr ? QString() : text->text();
}

} // namespace

bool runUntil(const std::function<bool()>& predicate, std::chrono::milliseconds deadline) {
    QEventLoop loop;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &loop, [&] {
        if (predicate())
            loop.exit(0);
    });
    QTimer late;
    QObject::connect(&late, &QTimer::timeout, &loop, [&loop] { loop.exit(1); });
    late.start(deadline);
    look.start(lookEveryMs);
    return loop.exec() == 0;
}

void Viewer::prepareProgram() {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QCoreApplication::setOrganizationName(u"pcd"_qs);
    QCoreApplication::setApplicationName(u"pcdview"_qs);
}

Viewer::Viewer(int frames)
    : m_folder(findFolder() + u"/bench_view-XXXXXX"_qs)
    , m_frames(frames) {
    if (!m_folder.isValid())
        complain(m_folder.errorString());
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                       m_folder.filePath(u"settings"_qs));
    PRecordSettings settings;
    settings.frames = m_frames;
    settings.remember(); // before the window reads them
    const QString scene = m_folder.filePath(u"scene.json"_qs);
    writeScene(scene);
    m_program = std::make_unique<PViewProgram>();
    expect(m_program->start(optionsFor(scene)));
    m_program->window().show();
    expect(camera().setLive(false)); // the first camera is opened by itself
}

Viewer::~Viewer() {
    m_program->window().close();
}

PCameraTabs& Viewer::tabs() const {
    return m_program->window().cameraTabs();
}

PViewCamera& Viewer::camera() const {
    PCameraPage* const page = tabs().currentPage();
    if (page == nullptr)
        complain(u"no camera is open"_qs);
    return page->camera();
}

void Viewer::show(const Sensor& sensor) {
    expect(tabs().open(u"Simulated-"_qs + sensor.name));
    m_shown = sensor.name;
    if (camera().state() != PViewCamera::State::Live) // the first time, opening has started it
        expect(camera().setLive(true));
    const quint64 before = producedFrames();
    waitFor(u"frames"_qs, [&] { return producedFrames() >= before + warmUpFrames; });
}

void Viewer::pause() {
    expect(camera().setLive(false));
    waitFor(u"the last frame"_qs, [this] { return camera().ledger().waiting == 0; });
    if (!camera().ledger().isBalanced())
        complain(u"the account of the frames does not balance"_qs);
}

void Viewer::record() {
    PCaptureFolder::setPath(m_folder.filePath(u"recording"_qs));
    QAction* const record = m_program->window().findChild<QAction*>(u"record"_qs);
    // In the event loop, where the user would press it.
    QTimer::singleShot(0, record, &QAction::trigger);
    waitFor(u"the start of the recording"_qs, [=] { return record->isChecked(); });
    waitFor(u"the end of the recording"_qs, [=] { return !record->isChecked(); });
}

void Viewer::removeRecording() {
    const QString folder = m_folder.filePath(u"recording"_qs);
    const QSize size = large().size;
    const bool isWhole = bytesIn(folder) >= qint64(3) * size.width() * size.height() * m_frames;
    QDir(folder).removeRecursively();
    if (!isWhole)
        complain(u"frames are missing in the recording: "_qs + findOutcome(m_program->window()));
}

quint64 Viewer::producedFrames() const {
    return camera().ledger().produced;
}

quint64 Viewer::lostFrames() const {
    const auto before = readCounts(m_shown).delivered;
    // Right after a frame was delivered none is due, which may still be delivered.
    CameraCounts now;
    waitFor(u"a frame"_qs, [&] {
        now = readCounts(m_shown);
        return now.delivered > before;
    });
    return now.due - now.delivered;
}
