// SPDX-License-Identifier: MIT
#include <apps/pcdview/PViewProgram.h>

#include <apps/common/crash/PCrashReport.h>
#include <apps/common/hang/PEnvironmentSeconds.h>
#include <apps/common/hang/PFilesInProgress.h>
#include <apps/common/hang/POverdueCalls.h>
#include <apps/common/hang/PStderrLine.h>
#include <apps/common/picture/PPictureFile.h>
#include <apps/common/program/PTerminationSignals.h>
#include <apps/common/program/PTranslations.h>
#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/hang/PHangProgram.h>
#include <apps/pcdview/options/PTheme.h>
#include <apps/pcdview/options/PViewLog.h>
#include <apps/pcdview/window/camera/PCameraTabs.h>
#include <apps/pcdview/window/main/PMainWindow.h>

#include <PCd/device/PDevice.h>
#include <PCd/profile/PDeviceProfileFile.h>

#include <PCdGui/PCdGui.h>

#include <PLog/PLog.h>

#include <QApplication>
#include <QDirIterator>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QPixmap>
#include <QProcess>
#include <QStatusBar>
#include <QTimer>
#include <QTranslator>

#include <unistd.h>

namespace {

constexpr std::chrono::milliseconds signalsEvery(100);
constexpr qsizetype logRecords = 2000; // more than users scroll through

constexpr const char* closingVariable = "PCD_CLOSING_SECONDS";

/// How long cameras may take to close.
std::chrono::milliseconds closingTime() {
    constexpr std::chrono::seconds usual(10); // a computer may be slow
    return PEnvironmentSeconds::read(closingVariable, usual);
}

/// What is ignored.
void reportEnvironment(const PViewOptions& options) {
    const PStatus language = PTranslations::checkEnvironment();
    if (!language.isOk() && options.language.isEmpty())
        PViewLog::warning(language.reason());
    for (const PStatus& time :
         {POverdueCalls::checkEnvironment(), PEnvironmentSeconds::check(closingVariable)}) {
        if (!time.isOk())
            PViewLog::warning(time.reason());
    }
}

/// The GUI thread does not return from a call to a camera, and a signal wants the program to end.
/// On a thread of its own.
void endWithoutCameras() {
    PFilesInProgress::completeAll();
    if (PTerminationSignals::isAcknowledged())
        return; // the call has returned meanwhile
    PStderrLine::write(u"pcdview: a camera does not return; the program ends without it: "_qs +
                       POverdueCalls::names());
    // Not exit(): it would wait for locks that the call in progress holds.
    ::_exit(1);
}

/// Installs Qt's own texts, on buttons and in file dialogs, if there is a catalogue.
void installTextsOfQt(const QLocale& locale) {
    auto translator = std::make_unique<QTranslator>();
    if (!translator->load(locale, u"qtbase"_qs, u"_"_qs,
                          QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        return;
    translator->setParent(QCoreApplication::instance());
    QCoreApplication::installTranslator(translator.release());
}

/// By which desktops know the program, and the icon where they do not.
void introduceToDesktop() {
    QGuiApplication::setDesktopFileName(u"pcdview"_qs);
    QIcon icon;
    QDirIterator files(u":/pcdview/window"_qs);
    while (files.hasNext())
        icon.addFile(files.next());
    QApplication::setWindowIcon(icon);
}

void useLanguage(const QString& language) {
    const QLocale locale(language);
    QLocale::setDefault(locale);
    installTextsOfQt(locale);
    PTranslations::install(language);
}

void useTheme(const PViewOptions& options) {
    PTheme::apply(options.theme.isEmpty() ? PTheme::chosen() : PTheme::fromName(options.theme));
}

} // namespace

PViewProgram::PViewProgram()
    : m_log(std::make_shared<PMemoryLogSink>(logRecords))
    , m_terminal(std::make_shared<PStderrLogSink>()) {
    Q_INIT_RESOURCE(pcdview); // a static library's resources are not registered automatically
}

PViewProgram::~PViewProgram() {
    m_window.reset();
    PLog::removeSink(m_log);
    PLog::removeSink(m_terminal);
    PLog::removeSink(PCrashReport::logSink());
}

PStatus PViewProgram::start(const PViewOptions& options) {
    PStatus status = startLog(options);
    m_calls.emplace(POverdueCalls::patience(), options.hangNoticeCommand());
    if (status.isOk())
        status = startCameras(options);
    if (!status.isOk())
        return status;
    PCdGui::install();
    useTheme(options);
    m_host.findCameras();
    // Opened before the window, which is made while the camera takes its first exposure.
    const QString name =
        options.camera.isEmpty() ? cameraOfProfile(options.profile) : options.camera;
    Opened opened = openCamera(name);
    m_window = std::make_unique<PMainWindow>(m_host, m_problem, m_log);
    QObject::connect(&m_window->cameraTabs(), &PCameraTabs::simulationRequested, m_window.get(),
                     [this] { restartSimulated(); });
    QObject::connect(
        &*m_calls, &PCallReporter::returned, m_window->statusBar(),
        [bar = m_window->statusBar()](const QString& text) { bar->showMessage(text); });
    showCamera(std::move(opened), name);
    introduceToDesktop(); // not earlier: it takes less time than the camera's first exposure
    if (!options.profile.isEmpty())
        offerProfile(options.profile);
    return PStatus::Ok;
}

PStatus PViewProgram::startLog(const PViewOptions& options) {
    PLog::addSink(PCrashReport::logSink()); // first, so that it has what others are busy with
    PLog::addSink(m_log);
    PLog::addSink(m_terminal);
    PLog::installQtMessageHandler();
    PLog::setFilter(u"warning"_qs);
    return options.logFilter ? PLog::setFilter(*options.logFilter)
                             : PLog::setFilterFromEnvironment();
}

PStatus PViewProgram::startCameras(const PViewOptions& options) {
    const PStatus sdk = m_host.loadSdk(options.sdk);
    if (!sdk.isOk())
        note(sdk.reason());
    if (!options.scene.isEmpty()) {
        const PStatus scene = m_host.loadScene(options.scene);
        if (!scene.isOk())
            return scene;
    }
    if (!options.trace.isEmpty()) {
        const PStatus trace = m_host.startTrace({options.trace, options.traceFrames});
        if (!trace.isOk())
            return trace;
    }
    const PStatus plugins = m_host.loadPlugins(options.pluginPaths);
    if (!plugins.isOk())
        note(plugins.reason());
    for (const PPluginLoader::Failure& failure : m_host.pluginFailures())
        note(u"plugin \"%1\" not loaded: %2"_qs.arg(failure.path, failure.reason));
    reportEnvironment(options);
    // After the plugins are loaded, and before their devices create their titles.
    useLanguage(PTranslations::language(options.language));
    return PStatus::Ok;
}

void PViewProgram::note(const QString& problem) {
    PViewLog::warning(problem);
    m_problem += (m_problem.isEmpty() ? QString() : u"\n"_qs) + problem;
}

/// The camera that it was saved from; empty if that is not plugged in, or if there is no profile.
QString PViewProgram::cameraOfProfile(const QString& path) const {
    PDeviceProfile profile;
    if (path.isEmpty() || !PDeviceProfileFile::read(path, profile).isOk())
        return {}; // offering it reports what is wrong
    for (const PDevice* device : m_host.manager().devices()) {
        const PCameraIdentity camera = m_host.identify(device);
        if (camera.model == profile.model && camera.serial == profile.serial)
            return camera.id;
    }
    return {};
}

/// The first one if the name is empty.
PViewProgram::Opened PViewProgram::openCamera(const QString& name) const {
    const PDeviceManager::Selection chosen = m_host.manager().select(name);
    if (chosen.device == nullptr)
        return {nullptr, name.isEmpty() ? PStatus() : PStatus::failure(chosen.problem)};
    auto camera = std::make_unique<PViewCamera>(m_host.identify(chosen.device));
    const PStatus status = camera->attach(chosen.device);
    return {std::move(camera), status};
}

/// What is wrong with a camera that nobody named is only shown in its tab.
void PViewProgram::showCamera(Opened opened, const QString& name) {
    if (opened.camera != nullptr)
        m_window->cameraTabs().add(std::move(opened.camera), opened.status);
    if (name.isEmpty() || opened.status.isOk())
        return;
    note(opened.status.reason());
    m_window->statusBar()->showMessage(opened.status.reason());
}

/// Queued within the main thread: the window that the question belongs to is shown first.
void PViewProgram::offerProfile(const QString& path) {
    QMetaObject::invokeMethod(
        m_window.get(), [this, path] { m_window->offerProfile(path); }, Qt::QueuedConnection);
}

int PViewProgram::runHangNotice(const PViewOptions& options) {
    Q_INIT_RESOURCE(pcdview);
    useLanguage(PTranslations::language(options.language));
    useTheme(options);
    introduceToDesktop();
    return PHangProgram::run(options.hangingViewer, closingTime());
}

int PViewProgram::run(const PViewOptions& options) {
    m_window->show();
    if (!options.grab.isEmpty()) {
        m_window->resize(PMainWindow::usualSize()); // there may be no screen to fit
        QTimer::singleShot(options.grabAfter, m_window.get(),
                           [this, path = options.grab] { grab(path); });
    }
    PTerminationSignals::expect(closingTime(), endWithoutCameras);
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, m_window.get(), [this] {
        if (PTerminationSignals::isNoted())
            endBySignal();
    });
    watch.start(signalsEvery);
    PViewLog::info(u"ready, cameras: %1"_qs.arg(m_host.manager().devices().size()));
    int code = QApplication::exec();
    m_window->finishFiles();
    const PStatus trace = m_host.checkTrace();
    if (!trace.isOk()) {
        note(trace.reason());
        code = code == 0 ? 1 : code;
    }
    // From here on only cameras are closed, which may take for ever; nothing else can fail.
    m_calls->stopNotices();
    m_deadline.emplace(closingTime(),
                       u"pcdview: a camera does not return; the program ends without it"_qs, code);
    m_window.reset();
    return code;
}

void PViewProgram::restartSimulated() {
    // A camera library stays loaded until the program ends.
    const QStringList words = PViewOptions::withSimulatedCameras(QCoreApplication::arguments());
    if (!m_window->close())
        return;
    if (!QProcess::startDetached(QCoreApplication::applicationFilePath(), words)) {
        m_window->show();
        m_window->statusBar()->showMessage(tr("The program could not be restarted."));
    }
}

/// Ends all event loops: a dialog may be open, whose question is then answered with No.
void PViewProgram::endBySignal() {
    PTerminationSignals::acknowledge();
    m_window->closeUnasked();
    QApplication::exit(0);
}

void PViewProgram::grab(const QString& path) {
    const PStatus saved =
        PPictureFile::save(path, m_window->grab().toImage(), {}, PPictureFile::Existing::Replace,
                           PPictureFile::Content::Window);
    if (!saved.isOk())
        note(saved.reason());
    QApplication::exit(saved.isOk() ? 0 : 1);
}
