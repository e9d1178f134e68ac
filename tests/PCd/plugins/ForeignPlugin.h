// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

/// Root object of a plugin of another kind.
class ForeignPlugin : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.example.imageformat")
};
