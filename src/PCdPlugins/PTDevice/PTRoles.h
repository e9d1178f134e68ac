// SPDX-License-Identifier: MIT
#pragma once

#include <QList>

class PDeviceProperty;

/// The roles of the plugin's properties, with their units.
class PTRoles {
public:
    /// Declares the roles of each property, by its id; properties without a role are unchanged. The
    /// device's thread.
    static void declare(const QList<PDeviceProperty*>& properties);
};
