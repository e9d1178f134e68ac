// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

/// The result of applying a profile to a device. A value type.
struct PDeviceProfileReport {
    /// A value of the profile that was not applied, and why, in plain words.
    struct Item {
        QByteArray id;
        QString reason;
    };

    QList<QByteArray> applied; ///< in the order they were sent, "mode" among them
    QList<Item> refused;       ///< the camera lacks it, cannot have it, or refused it
    QList<Item> ignored;       ///< skipped: actions, and what profiles do not contain
    QList<QByteArray> missing; ///< serialisable properties, and "id.field", not in the file
    QString note;              ///< set if saved from another camera; otherwise empty

    /// True if every value of the profile that can be set was applied.
    bool isComplete() const { return refused.isEmpty(); }
};
