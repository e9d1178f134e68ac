// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

/// What has come of a profile on a device. A value.
struct PDeviceProfileReport {
    /// A value of the profile that was not applied, and why, in plain words.
    struct Item {
        QByteArray id;
        QString reason;
    };

    QList<QByteArray> applied; ///< in the order they were sent, "mode" among them
    QList<Item> refused;       ///< the camera lacks it, cannot have it, or did not take it
    QList<Item> ignored;       ///< never meant to be set: actions, what profiles do not hold
    QList<QByteArray> missing; ///< serialisable properties, and "id.field", without a value in it
    QString note;              ///< that it was saved from another camera; empty: it was not

    /// True if every value of the profile that can be set was applied.
    bool isComplete() const { return refused.isEmpty(); }
};
