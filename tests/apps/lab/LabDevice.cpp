// SPDX-License-Identifier: MIT
#include <apps/lab/LabDevice.h>

#include <apps/lab/LabProperties.h>

#include <PCd/frame/PCdDipUtils.h>
#include <PCd/property/PDevicePropertyGroup.h>

#include <QTimer>

#include <cstring>

namespace {

constexpr QRect sensor(0, 0, 160, 120);
constexpr std::chrono::milliseconds pace(10);

template <typename Property>
PDeviceProperty* withRole(Property* property, PRole role, PRoleUnit unit = PRoleUnit::Own) {
    PPropertyRoles::declare(*property, {{role, unit}});
    return property;
}

} // namespace

LabDevice::LabDevice(QObject* parent)
    : PDevice(parent) {
    deviceId(false);
    setDeviceOption(PCD::DeviceOption::AsynchronousStill, true);
}

LabDevice::~LabDevice() {
    LabDevice::tryStopStream();
}

bool LabDevice::tryStartStream() {
    m_isEnding = false;
    m_thread = std::thread(&LabDevice::produce, this);
    if (m_filter == labFilterOfSelfDeletion)
        QTimer::singleShot(5 * pace, this, [this] { delete this; });
    return true;
}

bool LabDevice::tryStopStream() {
    if (!m_thread.joinable())
        return true;
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_ends.notify_all();
    m_thread.join();
    return true;
}

void LabDevice::produce() {
    std::unique_lock lock(m_mutex);
    while (!m_ends.wait_for(lock, pace, [this] { return m_isEnding; })) {
        lock.unlock();
        if (m_filter == labFilterWithoutMemory)
            reportDroppedFrames(PFrameOutcome::NoMemory);
        else
            processFrameImage(frame());
        lock.lock();
    }
}

bool LabDevice::triggerStillCapture() {
    processSnapshot(PCdDipUtils::imageAsDeviceFrame(frame()));
    return true;
}

PImage LabDevice::frame() {
    QSize size;
    {
        const std::lock_guard lock(m_mutex);
        size = m_window.size() / int(m_join);
    }
    if (m_quarters % 2 != 0)
        size.transpose();
    PImage image;
    if (!image.create(size.width(), size.height(), PDIP::ColorFormat::Gray))
        throw std::bad_alloc();
    const PDIP::ImageRawData data = image.rawData(PDIP::AccessMode::Write);
    std::memset(data.data(), 100, data.size());
    return image;
}

PDeviceMode LabDevice::getCurrentMode() {
    return {sensor.width(), sensor.height(), u"all"_qs, "all", 8};
}

bool LabDevice::trySetMode(const PDeviceMode& mode) {
    return mode.id == "all";
}

QList<PDeviceProperty*> LabDevice::getSupportProperties() {
    const auto title = [](const char* text) { return QString::fromLatin1(text); };
    PDeviceProperty* const heat = withRole(
        new LabNumber("heat", title("Heat"), {-50, 100, 0.1}, m_heat), PRole::SensorTemperature);
    heat->setSerializable(false);
    return {
        withRole(new LabNumber("shutter", title("Shutter"), {0.0001, 60, 0.0001}, m_shutter),
                 PRole::ExposureTime, PRoleUnit::Seconds),
        withRole(
            new LabNumber("amplification", title("Amplification"), {0, 24, 0.1}, m_amplification),
            PRole::Gain, PRoleUnit::Decibels),
        withRole(new LabSwitch("selftimed", title("Self-timed"), m_selfTimed), PRole::AutoExposure),
        withRole(new LabTurn("turn", title("Turn"), m_quarters), PRole::Rotation),
        withRole(new LabInteger("join", title("Join"), {1, 2, 1}, m_join), PRole::Binning),
        withRole(new LabWindow("window", title("Window"), sensor, m_window, m_mutex),
                 PRole::Region),
        new LabInteger("filter", title("Filter"), {1, 7, 1}, m_filter),
        heat};
}

QList<PDevicePropertyGroup*> LabDevice::getSupportPropertyGroups() {
    auto* const all = new PDevicePropertyGroup(u"lab"_qs, u"Lab"_qs);
    for (PDeviceProperty* const property : supportProperties())
        all->addProperty(property);
    return {all};
}

#include "moc_LabDevice.cpp"
