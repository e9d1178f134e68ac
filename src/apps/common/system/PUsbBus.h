// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/system/PSystemTree.h>
#include <apps/common/system/PUsbId.h>

#include <QList>

/// A device on a USB bus. A value.
struct PUsbDevice {
    QString port; ///< the bus, and the ports from the root to the device: "1-2.3"
    QString node; ///< the file that programs open
    PUsbId id;
    QString product;    ///< as the device calls itself; may be empty
    double version = 0; ///< of USB, as the device reports: 2.1
    double speed = 0;   ///< of its link, in Mbit/s
    bool isHub = false;
    bool canBeCamera = false;   ///< has an interface of its vendor's own, without a kernel driver
    bool hasSuperSpeed = false; ///< can use 5000 Mbit/s, says its list of capabilities

    /// "1234:5678 (Name), port 1-2.3".
    QString title() const;
    /// The port of the computer that it is connected to, directly or through hubs: "1-2".
    QString rootPort() const { return port.section(u'.', 0, 0); }
};

/// The devices on the USB buses. Any thread.
class PUsbBus {
public:
    /// All devices but the computer's own ports, sorted by their port; empty without a bus.
    static QList<PUsbDevice> devices(const PSystemTree& system);
    /// Those that can be cameras which need an SDK: no kernel driver uses them.
    static QList<PUsbDevice> possibleCameras(const PSystemTree& system);
};
