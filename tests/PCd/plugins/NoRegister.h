// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

/// Root of a plugin that claims to be a device plugin and is not.
class NoRegister : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "pellix.devices.noregister")
};
