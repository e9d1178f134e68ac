// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

class PDevice;
class PDeviceProperty;

/// The settings that a camera has, as texts for the user. A value type; any thread, unless a
/// function says otherwise.
struct PGstCatalogue {
    /// One setting.
    struct Entry {
        QByteArray id;
        QString title;
        QString value;    ///< as PGstSettings reads it; empty if it has none, or was not reported
        QString expected; ///< its range or choices, in words
        QString unit;     ///< of a number; empty if it has none
        QString description;
    };

    QList<Entry> entries; ///< in the order of the device

    /// From the cached values of the device. The device's thread.
    static PGstCatalogue of(PDevice& device);
    /// The entry of one property. The device's thread.
    static Entry describe(const PDeviceProperty& property);
};
