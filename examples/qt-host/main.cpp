// SPDX-License-Identifier: MIT
// A host with a window: the live picture of a camera, and a panel with all its settings. A camera
// that was unplugged is shown again when it is back. Usage: qt-host [--grab FILE] [CAMERA]
#include <PCdGui/PCdGui.h>
#include <PCdGui/PDevicePanel.h>

#include <PCd/device/PDevice.h>
#include <PCd/device/PDeviceManager.h>
#include <PCd/plugin/PPluginLoader.h>

#include <QApplication>
#include <QComboBox>
#include <QCommandLineParser>
#include <QMainWindow>
#include <QPainter>
#include <QSplitter>
#include <QStatusBar>

namespace {

/// The newest picture of a camera, as large as fits; a text if there is none.
class LiveView : public QWidget {
public:
    void showCamera(PDevice* camera, const QString& text) {
        m_camera = camera;
        m_text = text;
        qInfo("qt-host: %s", qPrintable(text));
        update();
    }
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), palette().dark());
        const QImage image = m_camera ? m_camera->newestFrame().image.toQImage() : QImage();
        if (image.isNull())
            return painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap, m_text);
        QRect place({}, image.size().scaled(size(), Qt::KeepAspectRatio));
        place.moveCenter(rect().center());
        // Smoothing all pixels of the sensor would take too long: most are left out first.
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(place, image.scaled(place.size() * 2 * devicePixelRatio()));
    }

private:
    PDevice* m_camera = nullptr;
    QString m_text;
};

/// Shows the camera with an id, or else the first. All of it runs on the GUI thread, to which the
/// cameras belong: their pictures come on threads of the SDK, and are announced on this one.
class Window : public QMainWindow {
public:
    Window(PDeviceManager& manager, const QString& id)
        : m_manager(manager)
        , m_id(id) {
        setCentralWidget(m_splitter);
        m_splitter->addWidget(m_view);
        m_splitter->setStretchFactor(0, 1); // all room but for what the panel needs
        statusBar()->addPermanentWidget(m_modes);
        connect(m_modes, &QComboBox::activated, this, &Window::setMode);
        connect(&manager, &PDeviceManager::deviceAdded, this, &Window::open);
        connect(&manager, &PDeviceManager::deviceRemoved, this, &Window::forget);
        open();
    }
    PDevice* camera() const { return m_camera; }

private:
    void open() {
        if (m_camera != nullptr)
            return;
        const PDeviceManager::Selection found = m_manager.select(m_id);
        if (found.device == nullptr)
            return m_view->showCamera(nullptr, found.problem);
        m_camera = found.device;
        m_id = QString::fromUtf8(m_camera->deviceId(false)); // after unplugging: this one only
        setWindowTitle(m_id);
        for (const PDeviceMode& mode : m_camera->getSupportModes())
            m_modes->addItem(mode.name);
        m_modes->setCurrentText(m_camera->reportedMode().name);
        const PStatus linked = m_camera->link();
        m_panel = new PDevicePanel(m_camera);
        m_splitter->addWidget(m_panel);
        connect(m_panel, &PDevicePanel::refused, this, [this](const QString& title) {
            statusBar()->showMessage("Refused by the camera: " + title, 5000);
        });
        // One picture may wait for this thread, others are dropped: the view shows the newest.
        m_camera->setFrameByteLimit(1);
        connect(m_camera, &PDevice::imageChanged, m_view, [this] { m_view->update(); });
        const PStatus status = linked.isOk() ? m_camera->startStream() : linked;
        m_view->showCamera(m_camera, status.isOk() ? "Waiting for a picture" : status.reason());
    }
    void forget(PDevice* gone) {
        if (gone != m_camera)
            return;
        m_camera = nullptr;
        m_modes->clear();
        delete m_panel;
        m_view->showCamera(nullptr, QString("%1 was unplugged").arg(m_id));
    }
    void setMode(int index) {
        const PStatus set = m_camera->setMode(m_camera->getSupportModes().value(index));
        statusBar()->showMessage(set.reason(), 5000);
        m_modes->setCurrentText(m_camera->reportedMode().name);
    }

    PDeviceManager& m_manager;
    QString m_id;
    LiveView* const m_view = new LiveView;
    QSplitter* const m_splitter = new QSplitter;
    QComboBox* const m_modes = new QComboBox;
    PDevicePanel* m_panel = nullptr;
    PDevice* m_camera = nullptr;
};

} // namespace

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addOption({"grab", "Saves the window with the first picture, and ends.", "file"});
    parser.process(application);
    PCdGui::install(); // the editors of the panel
    PPluginLoader loader;
    PDeviceManager manager;
    const QList<PDeviceRegister*> registers = loader.load();
    for (PDeviceRegister* cameras : registers)
        manager.addRegister(cameras);
    for (const PPluginLoader::Failure& failure : loader.failures())
        qWarning("%s: %s", qPrintable(failure.path), qPrintable(failure.reason));
    Window window(manager, parser.positionalArguments().value(0));
    window.resize(1200, 800);
    window.show();
    const bool isGrab = parser.isSet("grab");
    if (isGrab && window.camera() == nullptr)
        return 1;
    if (isGrab) {
        QObject::connect(window.camera(), &PDevice::imageChanged, &window, &QWidget::close);
        QObject::connect(&manager, &PDeviceManager::deviceRemoved, &window, [&window] {
            if (window.camera() == nullptr)
                QApplication::exit(1); // it went before its first picture
        });
    }
    const int code = QApplication::exec();
    if (code != 0 || !isGrab)
        return code;
    if (window.grab().save(parser.value("grab")))
        return 0;
    qCritical("qt-host: cannot write \"%s\"", qPrintable(parser.value("grab")));
    return 1;
}
