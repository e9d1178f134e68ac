// SPDX-License-Identifier: MIT
#include <devices/CameraScene.h>
#include <devices/DeviceFigures.h>
#include <devices/Excess.h>

#include <apps/pcdview/PViewProgram.h>
#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/window/camera/PCameraPage.h>
#include <apps/pcdview/window/camera/PCameraTabs.h>
#include <apps/pcdview/window/main/PMainWindow.h>

#include <PCd/device/PDevice.h>
#include <PCd/device/PDeviceRegister.h>
#include <PCd/property/PDeviceProperty.h>

#include <figure/Stopwatch.h>

#include <QEventLoop>
#include <QTimer>

#include <stdexcept>

namespace {

constexpr int viewedChanges = 400;
constexpr std::chrono::seconds untilStarted(2);

PViewOptions makeOptions(const QString& scene) {
    PViewOptions options;
    options.sdk = u"sim"_qs;
    options.scene = scene;
    options.language = u"en"_qs;
    options.logFilter = u"warning,PTDevice=off,qt=error"_qs;
    return options;
}

/// The viewer with a camera whose settings it shows, and one that it has not opened.
class ViewedCamera {
public:
    ViewedCamera() {
        const PStatus status = m_program.start(
            makeOptions(m_scene.write({CameraScene::describe(1), CameraScene::describe(2)})));
        if (!status.isOk())
            throw std::runtime_error(status.reason().toStdString());
        m_program.window().show();
        QEventLoop loop;
        QTimer::singleShot(untilStarted, &loop, &QEventLoop::quit);
        loop.exec();
        findCameras();
    }
    ~ViewedCamera() { m_program.window().close(); }

    double measureViewed() const { return measure(*m_viewed); }
    double measureOther() const { return measure(*m_other); }

private:
    void findCameras() {
        const PCameraPage* const page = m_program.window().cameraTabs().currentPage();
        if (page == nullptr || page->camera().device() == nullptr)
            throw std::runtime_error("the viewer has opened no camera");
        PDevice* const viewed = page->camera().device();
        page->camera().setLive(false);
        const auto* const all = qobject_cast<PDeviceRegister*>(viewed->parent());
        PDevice* const other =
            all->devices().first() == viewed ? all->devices().last() : all->devices().first();
        m_viewed = viewed->getProperty("contrast");
        m_other = other->getProperty("contrast");
    }

    /// Microseconds of the main thread until a changed number is everywhere.
    static double measure(PDeviceProperty& property) {
        const double total = Stopwatch::threadMs([&] {
            for (int i = 0; i < viewedChanges; ++i) {
                property.setValue(i % 100);
                // Once for what was posted, once for timers.
                QCoreApplication::processEvents();
                QCoreApplication::processEvents();
            }
        });
        return total * 1e3 / viewedChanges;
    }

    CameraScene m_scene;
    PViewProgram m_program;
    PDeviceProperty* m_viewed = nullptr;
    PDeviceProperty* m_other = nullptr;
};

} // namespace

FigurePair DeviceFigures::changeInViewer() {
    const auto cameras = std::make_shared<ViewedCamera>();
    return {makeExcess([=] { return cameras->measureViewed(); },
                       [=] { return cameras->measureOther(); }),
            {}};
}
