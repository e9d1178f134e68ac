// SPDX-License-Identifier: MIT
#include <counts/CountedWork.h>

#include <frame/CountingSink.h>
#include <stub/StubFrame.h>
#include <stub/StubHost.h>

#include <PCd/device/PDevice.h>
#include <PCd/property/PDeviceProperty.h>

#include <QCoreApplication>

#include <memory>
#include <stdexcept>

void CountedWork::deliverFrames(int count) {
    StubHost host;
    const auto sink = std::make_shared<CountingSink>();
    host.device().addFrameSink(sink);
    int delivered = 0;
    QObject::connect(&host.device(), &PDevice::imageChanged, [&] { ++delivered; });
    host.startStream();
    // Small, so that the pixels do not hide the rest, and not so small that a second copy of them
    // would be hidden.
    const StubFrame frame(80, 60, 8);
    for (int i = 0; i < count; ++i) {
        frame.push();
        QCoreApplication::sendPostedEvents();
    }
    if (sink->count() != count || delivered != count)
        throw std::runtime_error("not every frame arrived");
}

void CountedWork::setProperty(int count) {
    StubHost host;
    host.device().supportProperties();
    PDeviceProperty* const contrast = host.device().getProperty("contrast");
    if (contrast == nullptr)
        throw std::runtime_error("the camera has no contrast");
    int changes = 0;
    QObject::connect(contrast, &PDeviceProperty::valueChanged, [&] { ++changes; });
    for (int i = 0; i < count; ++i)
        contrast->setValue(i % 2 == 0 ? 5 : -5);
    if (changes < count)
        throw std::runtime_error("not every set was reported");
}

void CountedWork::openCameras(int count) {
    StubHost host{unsigned(count)};
    for (PDevice* const device : host.devices()) {
        if (device->supportProperties().isEmpty() || device->supportPropertyGroups().isEmpty())
            throw std::runtime_error("a camera has no catalogue");
    }
}
