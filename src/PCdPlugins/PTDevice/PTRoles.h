// SPDX-License-Identifier: MIT
#pragma once

#include <QList>

class PDeviceProperty;

/// What the plugin's properties mean to any host, and in which units they have it.
class PTRoles {
public:
    /// Declares the roles of each property, by its id; one without a role stays as it is. The
    /// device's thread.
    static void declare(const QList<PDeviceProperty*>& properties);
};
