// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

/// Root of a plugin for something else.
class ForeignPlugin : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.example.imageformat")
};
