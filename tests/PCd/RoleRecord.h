// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/value/PRoleValue.h>

#include <QMetaType>

/// A composite value whose fields have roles, under different names than the plugin's.
struct RoleRecord {
    Q_GADGET
    Q_PROPERTY(double shutter MEMBER shutter)
    Q_PROPERTY(int whole MEMBER whole)
    Q_PROPERTY(int rest MEMBER rest)
    Q_PROPERTY(bool waits MEMBER waits)

public:
    double shutter = 0.25; ///< seconds
    int whole = 2;         ///< of a triggered frame: seconds
    int rest = 500;        ///< and microseconds
    bool waits = true;

    static PRoleBindings roles() {
        return {{PRole::ExposureTime, PRoleUnit::Seconds, "shutter"},
                {PRole::TriggerTime, PRoleUnit::Seconds, "whole"},
                {PRole::TriggerTime, PRoleUnit::Microseconds, "rest"},
                {PRole::Triggered, PRoleUnit::Own, "waits"},
                {PRole::Gain, PRoleUnit::Own, "missing"},
                {PRole::FireTrigger, PRoleUnit::Own, {}, "fire"}};
    }
    static QVariant value() { return QVariant::fromValue(RoleRecord()); }
};
