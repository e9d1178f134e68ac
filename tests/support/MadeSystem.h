// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

/// A system that a test has made: a folder with /sys, /dev and /proc in which all is well, until
/// the test changes it. No id in it is that of a real product. One thread.
class MadeSystem {
public:
    /// Makes the tree in this folder, which exists: without USB devices, with 16 GB of memory and
    /// good clocks.
    explicit MadeSystem(const QString& root);

    /// A USB device; as it is here, a camera for USB 2 that nobody uses.
    struct Usb {
        QString port = u"1-2"_qs;
        int address = 4;
        QString vendor = u"1234"_qs;
        QString product = u"5678"_qs;
        QString name = u"Made-up camera"_qs;
        QString version = u" 2.00"_qs;
        QString speed = u"480"_qs;
        QString deviceClass = u"00"_qs;
        QString interfaceClass = u"ff"_qs;
        QString driver = {}; ///< of the interface; empty: none
        QByteArray capabilities = {};
    };
    /// Adds a device and its file in /dev, and returns the file's path.
    QString addUsb(const Usb& device);

    /// Adds a process that has a file open.
    void addHolder(int process, const QByteArray& program, const QString& file);

    /// Writes a file of the tree, with its folder.
    void write(const QString& name, const QByteArray& text);
    void setAvailableMemory(quint64 bytes);

    const QString& root() const { return m_root; }

private:
    QString m_root;
};

/// The descriptors of a device for USB 3 at a USB 2 port: 480 and 5000 Mbit/s.
QByteArray superSpeedCapabilities();
