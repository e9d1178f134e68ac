// SPDX-License-Identifier: MIT
#include <apps/common/doctor/PUsbLinkExamination.h>

#include <utility>

namespace {

using Severity = PFinding::Severity;

const QString speedTopic = u"usb-speed"_qs;
const QString bandwidthTopic = u"usb-bandwidth"_qs;

// Mbit/s
constexpr double highSpeed = 480;
constexpr double superSpeed = 5000;

QString linkText(const PUsbDevice& device) {
    return u"a link of %1 Mbit/s; the device reports USB %2"_qs.arg(
        QString::number(device.speed), QString::number(device.version, 'f', 1));
}

/// What the device can use for certain: at USB 2 ports, those for USB 3 report 2.1 too.
double certainSpeed(const PUsbDevice& device) {
    if (device.version >= 3 || device.hasSuperSpeed)
        return superSpeed;
    return device.version >= 2 ? highSpeed : device.speed;
}

PFinding examineSpeed(const PUsbDevice& device) {
    const QString link = linkText(device);
    if (device.speed < certainSpeed(device)) {
        return {
            Severity::Warning, speedTopic, device.title(),
            u"%1, and can use %2 Mbit/s"_qs.arg(link, QString::number(certainSpeed(device))),
            u"Connect it to a USB 3 port with a USB 3 cable, without a hub or an extension."_qs};
    }
    // 2.1 also has other reasons; before Linux 6.10 the system does not show which.
    if (device.version > 2 && device.speed <= highSpeed) {
        return {Severity::Note, speedTopic, device.title(), link + u": it may be one for USB 3"_qs,
                u"If the camera has USB 3, connect it to a USB 3 port with a USB 3 cable."_qs};
    }
    return {Severity::Ok, speedTopic, device.title(), link, {}};
}

/// The other fast devices behind the same port of the computer.
QStringList findNeighbours(const PUsbDevice& device, const QList<PUsbDevice>& all) {
    QStringList titles;
    for (const PUsbDevice& other : all) {
        if (other.port != device.port && other.rootPort() == device.rootPort() && !other.isHub &&
            other.speed >= highSpeed)
            titles.append(other.title());
    }
    return titles;
}

PFinding examineBandwidth(const PUsbDevice& device, const QList<PUsbDevice>& all) {
    const QStringList neighbours = findNeighbours(device, all);
    if (neighbours.isEmpty()) {
        return {Severity::Ok,
                bandwidthTopic,
                device.title(),
                u"no other fast device is connected to its port of the computer"_qs,
                {}};
    }
    return {Severity::Warning, bandwidthTopic, device.title(),
            u"shares port %1 of the computer through a hub with %2"_qs.arg(
                device.rootPort(), neighbours.join(u"; "_qs)),
            u"Connect the camera to a port of its own on the computer."_qs};
}

} // namespace

PUsbLinkExamination::PUsbLinkExamination(PSystemTree system)
    : m_system(std::move(system)) {
}

QList<PFinding> PUsbLinkExamination::run() const {
    const QList<PUsbDevice> all = PUsbBus::devices(m_system);
    QList<PFinding> findings;
    for (const PUsbDevice& device : all) {
        if (device.canBeCamera)
            findings += {examineSpeed(device), examineBandwidth(device, all)};
    }
    return findings;
}
