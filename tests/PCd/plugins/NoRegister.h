// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

/// Root of a plugin that says it is a device plugin, and is none.
class NoRegister : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "pellix.devices.noregister")
};
