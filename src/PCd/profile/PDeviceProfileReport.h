// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

/// The result of applying a profile to a device. A value.
struct PDeviceProfileReport {
    /// A value of the profile that was not applied, and why, in plain words.
    struct Item {
        QByteArray id;
        QString reason;
    };

    QList<QByteArray> applied; ///< in the order they were sent, "mode" among them
    QList<Item> refused;       ///< the camera lacks it, cannot have it, or did not take it
    QList<Item> ignored;       ///< skipped: actions, and what profiles do not hold
    QList<QByteArray> missing; ///< serialisable properties, and "id.field", not in the file
    QString note;              ///< says if it was saved from another camera; empty if not

    /// True if every value of the profile that can be set was applied.
    bool isComplete() const { return refused.isEmpty(); }
};
