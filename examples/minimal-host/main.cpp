// SPDX-License-Identifier: MIT
// A host in one file: lists the cameras, opens the first one, sets its exposure time, takes ten
// frames, and saves the last one. Usage: minimal-host PICTURE, for example minimal-host frame.png.
#include <PCd/device/PDevice.h>
#include <PCd/device/PDeviceManager.h>
#include <PCd/device/PDeviceRoles.h>
#include <PCd/plugin/PPluginLoader.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PPropertyRoles.h>

#include <PDip/PImage.h>

#include <QCoreApplication>
#include <QImage>
#include <QPointer>
#include <QTextStream>
#include <QTimer>

namespace {

constexpr int framesWanted = 10;
constexpr double exposureMs = 20;

/// Prints why the program cannot go on; returns its exit code.
int fail(const QString& reason) {
    QTextStream(stderr) << "minimal-host: " << reason << '\n';
    return 1;
}

/// Turns automatic exposure off and sets the time, in whatever unit the camera has it.
bool setExposure(const PDevice& camera) {
    if (PDeviceProperty* automatic = PDeviceRoles::plainProperty(camera, PRole::AutoExposure))
        automatic->setValue(false);
    PDeviceProperty* time = PDeviceRoles::plainProperty(camera, PRole::ExposureTime);
    if (time == nullptr)
        return false;
    time->setValue(qRound(exposureMs / PPropertyRoles::of(*time).first().toRole(1.0)));
    return true;
}

} // namespace

int main(int argc, char* argv[]) {
    QCoreApplication application(argc, argv); // no window, so no display is needed
    if (argc != 2)
        return fail("usage: minimal-host PICTURE");
    PPluginLoader loader; // before the manager: it outlives the devices
    PDeviceManager manager;
    for (PDeviceRegister* cameras : loader.load())
        manager.addRegister(cameras);
    for (PDevice* device : manager.devices())
        QTextStream(stdout) << device->deviceId(false) << "  " << device->model() << '\n';
    const QPointer<PDevice> camera = manager.devices().value(0); // also null once it is unplugged
    if (camera == nullptr)
        return fail("no camera found");
    if (const PStatus linked = camera->link(); !linked.isOk())
        return fail(linked.reason());
    camera->supportProperties(); // read from the camera when first used
    if (!setExposure(*camera))
        return fail("the camera has no exposure time");

    QImage last;
    int frames = 0;
    QObject::connect(camera, &PDevice::imageChanged, &application, [&](const PImage& image) {
        last = image.toQImage();
        if (++frames == framesWanted)
            QCoreApplication::quit();
    });
    QObject::connect(camera, &PDevice::unlinked, &application, [] { QCoreApplication::exit(1); });
    QTimer::singleShot(30'000, &application, &QCoreApplication::quit);
    if (const PStatus started = camera->startStream(); !started.isOk())
        return fail(started.reason());
    const bool isGone = QCoreApplication::exec() != 0;
    if (camera != nullptr)
        camera->unlink(); // which ends the stream
    if (frames < framesWanted)
        return fail(QString(isGone ? "gone after %1 frames" : "only %1 frames came").arg(frames));
    return last.save(argv[1]) ? 0 : fail(QString("cannot write \"%1\"").arg(argv[1]));
}
