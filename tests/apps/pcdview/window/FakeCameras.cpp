// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/FakeCameras.h>

#include <apps/pcdview/ViewPictures.h>

#include <apps/pcdview/camera/PViewCamera.h>
#include <apps/pcdview/capture/PCaptureFolder.h>
#include <apps/pcdview/window/camera/PCameraPage.h>

#include <support/WaitUntil.h>

#include <QCoreApplication>
#include <QSettings>

FakeCameras::FakeCameras()
    : tabs(makeTabs()) {
    QCoreApplication::setOrganizationName(u"pcd"_qs);
    QCoreApplication::setApplicationName(u"pcdview"_qs);
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, path(u"settings"_qs));
    PCaptureFolder::setPath(captureFolder());
    window.setCentralWidget(tabs);
}

/// The cameras exist before the tabs, which would open the first one that arrives.
PCameraTabs* FakeCameras::makeTabs() {
    host.manager().addRegister(cameras);
    return new PCameraTabs(host, {});
}

FakeCameras::~FakeCameras() {
    delete tabs; // while everything connected to it still exists, as the window does
}

void FakeCameras::open(const QString& id) {
    const PStatus status = tabs->open(id);
    ASSERT_TRUE(status.isOk()) << status.reason().toStdString();
}

void FakeCameras::showFrame(FakeDevice& device, const PImage& image) {
    ASSERT_NE(tabs->currentPage(), nullptr);
    QSignalSpy shown(&tabs->currentPage()->camera(), &PViewCamera::frameChanged);
    device.processFrameImage(image);
    ASSERT_TRUE(waitUntil([&] { return !shown.isEmpty(); }));
}

PImage FakeCameras::halves(const QColor& left, const QColor& right) {
    return makePicture(40, 30, PDIP::ColorFormat::Bgr,
                       [&](int x, int) { return x < 20 ? left : right; });
}

void FakeCameras::unplugFirst() {
    cameras->alive = {second};
    host.manager().updateDevices();
}

QString FakeCameras::lastMessage(const QSignalSpy& messages) {
    return messages.isEmpty() ? QString() : messages.last().value(0).toString();
}
