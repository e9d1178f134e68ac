// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QVariant>

/// The settings of a device as in a profile file (docs/profiles.md), with or without such a file. A
/// value, independent of any device.
struct PCD_EXPORT PDeviceProfile {
    /// One value of the file.
    struct Setting {
        QByteArray id;
        QVariant form;    ///< see PPropertyEncoding
        QString position; ///< in the file, for messages: "line 12"
        /// Positions of the fields, if the form is a QVariantMap of them.
        QHash<QString, QString> fieldPositions = {};
    };

    QString path;   ///< the file; empty if there is none, and so no positions
    QString model;  ///< of the saved device
    QString serial; ///< likewise
    Setting mode;   ///< the form is the mode's id; invalid: the device had no modes
    QList<Setting> settings;
};
