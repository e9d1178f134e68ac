// SPDX-License-Identifier: MIT
#include <gstreamer/PGstDeviceWatch.h>

#include <gstreamer/PGstDeviceList.h>
#include <gstreamer/camera/PGstHost.h>

#include <PCd/device/PDevice.h>
#include <PCd/device/PDeviceManager.h>

PGstDeviceWatch::PGstDeviceWatch(GstDeviceProvider* provider)
    : m_provider(provider) {
}

PGstDeviceWatch::~PGstDeviceWatch() {
    stop();
}

bool PGstDeviceWatch::start() {
    PGstHost& host = PGstHost::instance();
    const PStatus prepared = host.prepare({}, {});
    if (!prepared.isOk()) {
        GST_WARNING_OBJECT(m_provider, "%s", prepared.reason().toUtf8().constData());
        return false;
    }
    PDeviceManager& manager = host.manager();
    connect(&manager, &PDeviceManager::deviceAdded, this, &PGstDeviceWatch::add);
    connect(&manager, &PDeviceManager::deviceRemoved, this, &PGstDeviceWatch::remove);
    for (PDevice* const device : manager.devices())
        add(device);
    return true;
}

void PGstDeviceWatch::stop() {
    if (PGstHost::instance().isPrepared())
        PGstHost::instance().manager().disconnect(this);
    for (GstDevice* const device : std::as_const(m_devices))
        gst_object_unref(device);
    m_devices.clear();
}

void PGstDeviceWatch::add(PDevice* device) {
    GstDevice* const made = PGstDeviceList::makeDevice(*device);
    m_devices.insert(device, GST_DEVICE(gst_object_ref_sink(made)));
    gst_device_provider_device_add(m_provider, made);
}

void PGstDeviceWatch::remove(PDevice* device) {
    GstDevice* const made = m_devices.take(device);
    if (made == nullptr)
        return;
    gst_device_provider_device_remove(m_provider, made);
    gst_object_unref(made);
}

#include "moc_PGstDeviceWatch.cpp"
