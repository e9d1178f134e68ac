// SPDX-License-Identifier: MIT
#include <apps/common/system/PUsbBus.h>

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

namespace {

const QString usbFolder = u"sys/bus/usb/devices/"_qs;
const QString hubClass = u"09"_qs;
const QString vendorClass = u"ff"_qs;

// USB 3.2, 9.6.2: a descriptor of one capability begins with its length, type and kind.
constexpr int capabilityType = 0x10;
constexpr int superSpeedKind = 0x03;

bool listsSuperSpeed(const QByteArray& descriptors) {
    qsizetype at = 0;
    while (at + 2 < descriptors.size()) {
        const int length = uchar(descriptors.at(at));
        if (uchar(descriptors.at(at + 1)) == capabilityType &&
            uchar(descriptors.at(at + 2)) == superSpeedKind)
            return true;
        if (length == 0)
            return false;
        at += length;
    }
    return false;
}

/// A program that uses a device through its file has the driver "usbfs".
bool isFreeForPrograms(const QString& interface) {
    const QFileInfo driver(interface + u"/driver"_qs);
    return !driver.isSymLink() || QFileInfo(driver.symLinkTarget()).fileName() == u"usbfs";
}

bool hasOwnInterface(const PSystemTree& system, const QString& port) {
    const QDir folder(system.path(usbFolder));
    for (const QString& name : folder.entryList({port + u":*"_qs}, QDir::Dirs)) {
        const QString number = system.readText(usbFolder + name + u"/bInterfaceClass"_qs);
        if (number == vendorClass && isFreeForPrograms(folder.filePath(name)))
            return true;
    }
    return false;
}

QByteArray readCapabilities(const PSystemTree& system, const QString& port) {
    // Systems before Linux 6.10 do not have it.
    QFile file(system.path(usbFolder + port + u"/bos_descriptors"_qs));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

PUsbDevice readDevice(const PSystemTree& system, const QString& port) {
    const auto read = [&](const QString& name) {
        return system.readText(usbFolder + port + u'/' + name);
    };
    const auto nodeNumber = [&](const QString& name) {
        return QString::number(read(name).toInt()).rightJustified(3, u'0');
    };
    PUsbDevice device;
    device.port = port;
    device.node = system.path(
        u"dev/bus/usb/%1/%2"_qs.arg(nodeNumber(u"busnum"_qs), nodeNumber(u"devnum"_qs)));
    device.id =
        PUsbId::parse(read(u"idVendor"_qs) + u':' + read(u"idProduct"_qs)).value_or(PUsbId());
    device.product = read(u"product"_qs);
    device.version = read(u"version"_qs).toDouble();
    device.speed = read(u"speed"_qs).toDouble();
    device.isHub = read(u"bDeviceClass"_qs) == hubClass;
    device.canBeCamera = !device.isHub && hasOwnInterface(system, port);
    device.hasSuperSpeed = listsSuperSpeed(readCapabilities(system, port));
    return device;
}

} // namespace

QString PUsbDevice::title() const {
    const QString name = product.isEmpty() ? QString() : u" (%1)"_qs.arg(product);
    return u"%1%2, port %3"_qs.arg(id.toText(), name, port);
}

QList<PUsbDevice> PUsbBus::devices(const PSystemTree& system) {
    // Others are interfaces, "1-2:1.0", and the computer's own ports, "usb1".
    static const QRegularExpression portName(u"\\A[0-9]+-[0-9.]+\\z"_qs);
    QList<PUsbDevice> found;
    for (const QString& name : QDir(system.path(usbFolder)).entryList(QDir::Dirs, QDir::Name)) {
        if (portName.match(name).hasMatch())
            found.append(readDevice(system, name));
    }
    return found;
}

QList<PUsbDevice> PUsbBus::possibleCameras(const PSystemTree& system) {
    QList<PUsbDevice> found = devices(system);
    found.removeIf([](const PUsbDevice& device) { return !device.canBeCamera; });
    return found;
}
