// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QString>

class PDevice;

/// The title under which the window shows a setting that a message has by its id. The device's
/// thread.
class PSettingTitle {
    Q_DECLARE_TR_FUNCTIONS(PSettingTitle)

public:
    /// The title of the property with this id, or of its group if it has none; "id.field" is a
    /// field of it, and "mode" the resolution. The id if the device has no such property, or is
    /// null.
    static QString of(PDevice* device, const QByteArray& id);
};
