// SPDX-License-Identifier: MIT
#include <support/MadeSystem.h>

#include <support/FolderTest.h>

#include <QDir>
#include <QFileInfo>

MadeSystem::MadeSystem(const QString& root)
    : m_root(QDir::cleanPath(root)) {
    setAvailableMemory(16'000'000'000);
    write(u"sys/devices/system/clocksource/clocksource0/current_clocksource"_qs, "tsc\n");
    write(u"clock-status"_qs, "1\n"); // STA_PLL
    // The computer's own ports are among the devices too.
    write(u"sys/bus/usb/devices/usb1/bDeviceClass"_qs, "09\n");
    write(u"sys/bus/usb/devices/1-0:1.0/bInterfaceClass"_qs, "09\n");
}

QString MadeSystem::addUsb(const Usb& device) {
    const QString bus = device.port.section(u'-', 0, 0);
    const QString folder = u"sys/bus/usb/devices/%1/"_qs.arg(device.port);
    write(folder + u"busnum"_qs, bus.toLatin1());
    write(folder + u"devnum"_qs, QByteArray::number(device.address));
    write(folder + u"idVendor"_qs, device.vendor.toLatin1());
    write(folder + u"idProduct"_qs, device.product.toLatin1());
    if (!device.name.isEmpty())
        write(folder + u"product"_qs, device.name.toUtf8());
    write(folder + u"version"_qs, device.version.toLatin1());
    write(folder + u"speed"_qs, device.speed.toLatin1());
    write(folder + u"bDeviceClass"_qs, device.deviceClass.toLatin1());
    if (!device.capabilities.isEmpty())
        writeFile(m_root + u'/' + folder + u"bos_descriptors"_qs, device.capabilities);
    const QString interface = u"sys/bus/usb/devices/%1:1.0/"_qs.arg(device.port);
    write(interface + u"bInterfaceClass"_qs, device.interfaceClass.toLatin1());
    if (!device.driver.isEmpty()) {
        QFile::link(u"../../drivers/"_qs + device.driver, m_root + u'/' + interface + u"driver"_qs);
    }
    const QString node = u"dev/bus/usb/%1/%2"_qs.arg(
        bus.rightJustified(3, u'0'), QString::number(device.address).rightJustified(3, u'0'));
    write(node, QByteArray());
    return m_root + u'/' + node;
}

void MadeSystem::addHolder(int process, const QByteArray& program, const QString& file) {
    const QString folder = u"proc/%1/"_qs.arg(process);
    write(folder + u"comm"_qs, program);
    QDir(m_root).mkpath(folder + u"fd"_qs);
    QFile::link(file, m_root + u'/' + folder + u"fd/7"_qs);
}

void MadeSystem::write(const QString& name, const QByteArray& text) {
    const QString path = m_root + u'/' + name;
    QDir().mkpath(QFileInfo(path).path());
    writeFile(path, text);
}

void MadeSystem::setAvailableMemory(quint64 bytes) {
    write(u"proc/meminfo"_qs, "MemTotal:       32000000 kB\nMemAvailable:   " +
                                  QByteArray::number(bytes / 1024) + " kB\nCached: 1 kB\n");
}

QByteArray superSpeedCapabilities() {
    // The head, what each device for USB 2.1 has, and the one that counts.
    return QByteArray::fromHex("050f160002"
                               "07100206000000"
                               "0a100300"
                               "0c0001000000");
}
