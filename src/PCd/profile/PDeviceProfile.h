// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QVariant>

/// The settings of a device as they stand in a file (docs/profiles.md), or in the same form without
/// one. A value; it knows no device.
struct PDeviceProfile {
    /// One value of the file.
    struct Setting {
        QByteArray id;
        QVariant form;    ///< see PPropertyEncoding
        QString position; ///< in the file, for messages: "line 12"
        /// Where the fields stand whose values are the form, a QVariantMap.
        QHash<QString, QString> fieldPositions = {};
    };

    QString path;   ///< the file; empty: there is none, and no positions
    QString model;  ///< of the device that was saved
    QString serial; ///< likewise
    Setting mode;   ///< the form is the mode's id; invalid: the device had no modes
    QList<Setting> settings;
};
