// SPDX-License-Identifier: MIT
#include <gstreamer/PGstDeviceList.h>

#include <gstreamer/PGstDeviceWatch.h>
#include <gstreamer/PcdDevice.h>
#include <gstreamer/camera/PGstHost.h>
#include <gstreamer/camera/PQtLoop.h>
#include <gstreamer/frame/PGstCaps.h>

#include <PCd/device/PDevice.h>
#include <PCd/device/PDeviceManager.h>

#include <PCore/PPrintableText.h>

#include <utility>

namespace {

/// Devices on their way from Qt's thread; those that nobody took are released.
struct FoundDevices {
    GList* list = nullptr;

    FoundDevices() = default;
    FoundDevices(FoundDevices&& other) noexcept
        : list(std::exchange(other.list, nullptr)) {}
    FoundDevices& operator=(FoundDevices&& other) noexcept {
        std::swap(list, other.list);
        return *this;
    }
    ~FoundDevices() { g_list_free_full(list, gst_object_unref); }
};

FoundDevices findDevices() {
    FoundDevices found;
    PGstHost& host = PGstHost::instance();
    const PStatus prepared = host.prepare({}, {});
    if (!prepared.isOk()) {
        GST_WARNING("%s", prepared.reason().toUtf8().constData());
        return found;
    }
    for (PDevice* const device : host.manager().devices())
        found.list =
            g_list_append(found.list, gst_object_ref_sink(PGstDeviceList::makeDevice(*device)));
    return found;
}

} // namespace

PGstDeviceList::PGstDeviceList(GstDeviceProvider* provider)
    : m_provider(provider) {
}

PGstDeviceList::~PGstDeviceList() {
    stop();
}

GstDevice* PGstDeviceList::makeDevice(PDevice& device) {
    const PCameraIdentity identity = PGstHost::instance().identify(device);
    const QByteArray id = identity.id.toUtf8();
    GstStructure* const details = gst_structure_new(
        "pcd-properties", "device.api", G_TYPE_STRING, "pcd", "pcd.camera", G_TYPE_STRING,
        id.constData(), "pcd.model", G_TYPE_STRING, identity.model.toUtf8().constData(),
        "pcd.serial", G_TYPE_STRING, identity.serial.toUtf8().constData(), "pcd.simulated",
        G_TYPE_BOOLEAN, identity.simulated ? TRUE : FALSE, nullptr);
    QList<PDeviceMode> modes; // if they are not read, caps of any size
    device.readModes(modes);
    GstCaps* const caps = PGstCaps::fromModes(modes);
    const QByteArray name = PPrintableText::toLine(identity.model).toUtf8();
    GstDevice* const made = pcd_device_new(id.constData(), name.constData(), caps, details);
    gst_caps_unref(caps);
    return made;
}

GList* PGstDeviceList::probe() const {
    auto found = PQtLoop::ask<FoundDevices>(findDevices);
    return found ? std::exchange(found->list, nullptr) : nullptr;
}

bool PGstDeviceList::start() {
    stop();
    // The watch belongs to Qt's thread, and so is deleted there.
    const auto deleteThere = [](PGstDeviceWatch* watch) {
        PQtLoop::post([watch] { delete watch; });
    };
    using Watch = std::shared_ptr<PGstDeviceWatch>;
    const auto watch = PQtLoop::ask<Watch>([provider = m_provider, deleteThere] {
        Watch made(new PGstDeviceWatch(provider), deleteThere);
        return made->start() ? made : Watch();
    });
    m_watch = watch.value_or(nullptr);
    return m_watch != nullptr;
}

void PGstDeviceList::stop() {
    const auto watch = std::exchange(m_watch, nullptr);
    // Waits, so that the provider is not used any more when it is deleted.
    if (watch)
        PQtLoop::call([watch] { watch->stop(); });
}
