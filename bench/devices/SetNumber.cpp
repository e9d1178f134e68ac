// SPDX-License-Identifier: MIT
#include <devices/DeviceFigures.h>
#include <devices/Excess.h>
#include <devices/OpenCameras.h>

#include <PCd/device/PDevice.h>
#include <PCd/property/PDeviceProperty.h>

#include <figure/Stopwatch.h>

#include <toupcam/toupcam.h>

#include <stdexcept>

namespace {

constexpr int changes = 4000;

using Open = HToupcam(const char*);
using Close = void(HToupcam);
using Put = HRESULT(HToupcam, int);
using Get = HRESULT(HToupcam, int*);

/// A camera of a host, and a handle for calls of the SDK without one, each of a camera of its own.
class TwoCameras {
public:
    TwoCameras() {
        m_cameras.replace(2);
        m_close = m_cameras.sdkFunction<Close>("Toupcam_Close");
        m_put = m_cameras.sdkFunction<Put>("Toupcam_put_Contrast");
        m_get = m_cameras.sdkFunction<Get>("Toupcam_get_Contrast");
        m_handle = m_cameras.sdkFunction<Open>("Toupcam_Open")(
            CameraScene::cameraId(1).toLatin1().constData());
        m_cameras.find();
        if (m_handle == nullptr || m_cameras.devices().size() != 1)
            throw std::runtime_error("the cameras could not be opened");
        PDevice* const device = m_cameras.devices().first();
        device->link();
        m_property = device->getProperty("contrast");
    }
    ~TwoCameras() { m_close(m_handle); }

    /// Microseconds to set a number through the host.
    double measureProperty() const {
        const double total = Stopwatch::threadMs([this] {
            for (int i = 0; i < changes; ++i)
                m_property->setValue(i % 100);
        });
        return m_property->valueInner() == (changes - 1) % 100 ? total * 1e3 / changes : -1;
    }

    /// Microseconds to set it and read it, which the host does to know what the camera has.
    double measureSdk() const {
        int value = 0;
        const double total = Stopwatch::threadMs([&] {
            for (int i = 0; i < changes; ++i) {
                m_put(m_handle, i % 100);
                m_get(m_handle, &value);
            }
        });
        return value == (changes - 1) % 100 ? total * 1e3 / changes : -1;
    }

private:
    OpenCameras m_cameras;
    HToupcam m_handle = nullptr;
    Close* m_close = nullptr;
    Put* m_put = nullptr;
    Get* m_get = nullptr;
    PDeviceProperty* m_property = nullptr;
};

} // namespace

FigurePair DeviceFigures::setNumber() {
    const auto cameras = std::make_shared<TwoCameras>();
    return {makeExcess([=] { return cameras->measureProperty(); },
                       [=] { return cameras->measureSdk(); }),
            {}};
}
