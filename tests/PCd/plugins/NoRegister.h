// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

/// Root object of a plugin that claims to be a device plugin but is not.
class NoRegister : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "pellix.devices.noregister")
};
