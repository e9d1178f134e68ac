// SPDX-License-Identifier: MIT
#include <devices/OpenCameras.h>

#include <PCd/device/PDevice.h>
#include <PCd/device/PDeviceRegister.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QTimer>

#include <dlfcn.h>

#include <stdexcept>

namespace {

// The plugin looks for cameras one second after the last one was plugged in.
constexpr std::chrono::milliseconds untilRescanned(1200);

void check(const PStatus& status) {
    if (!status.isOk())
        throw std::runtime_error(status.reason().toStdString());
}

} // namespace

OpenCameras::OpenCameras() {
    check(m_host.loadSdk(u"sim"_qs));
    check(m_host.loadScene(m_scene.write({})));
    check(m_host.loadPlugins({}));
    m_host.findCameras();
}

OpenCameras::~OpenCameras() = default;

void OpenCameras::replace(const QJsonArray& cameras) {
    close();
    check(m_host.loadScene(m_scene.write(cameras)));
}

void OpenCameras::replace(int cameras, bool arePlugged) {
    QJsonArray list;
    for (int number = 1; number <= cameras; ++number) {
        QJsonObject camera = CameraScene::describe(number);
        camera[u"plugged"_qs] = arePlugged;
        list.append(camera);
    }
    replace(list);
}

void OpenCameras::find() {
    m_host.manager().updateDevices();
}

void OpenCameras::open() {
    find();
    for (PDevice* device : devices()) {
        device->supportPropertyGroups();
        check(device->link());
    }
}

void OpenCameras::close() {
    for (PDevice* device : devices())
        qobject_cast<PDeviceRegister*>(device->parent())->removeDevice(device);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void OpenCameras::settle() {
    QEventLoop loop;
    QTimer::singleShot(untilRescanned, &loop, &QEventLoop::quit);
    loop.exec();
}

void* OpenCameras::findFunction(const char* name) const {
    void* const library =
        dlopen(QFile::encodeName(m_host.sdk().path()).constData(), RTLD_NOW | RTLD_NOLOAD);
    void* const function = library == nullptr ? nullptr : dlsym(library, name);
    if (function == nullptr)
        throw std::runtime_error("the simulated SDK lacks a function");
    return function;
}
