// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QMetaType>
#include <QString>

/// One resolution of a device. A value type.
struct PDeviceMode {
    int width = 0;    ///< pixels
    int height = 0;   ///< pixels
    QString name;     ///< for the user, for example "2592x1944"
    QByteArray id;    ///< used by the device; an empty id with no size is "no mode"
    int bitDepth = 0; ///< bits of a pixel

    friend bool operator==(const PDeviceMode& a, const PDeviceMode& b) {
        return a.width == b.width && a.height == b.height && a.name == b.name && a.id == b.id &&
               a.bitDepth == b.bitDepth;
    }
    friend bool operator!=(const PDeviceMode& a, const PDeviceMode& b) { return !(a == b); }
};

Q_DECLARE_METATYPE(PDeviceMode)
