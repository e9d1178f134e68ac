// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <QList>

class PDeviceProperty;

/// The order in which settings are sent to a device, as some affect others: switches and choices
/// (automatic modes, binning, rotation), composites, numbers, and last the region, which binning
/// and the like limit or reset. The device's thread.
class PCD_EXPORT PDeviceProfileOrder {
public:
    /// The same properties in that order; within a kind, their order is kept.
    static QList<PDeviceProperty*> sorted(QList<PDeviceProperty*> properties);
};
