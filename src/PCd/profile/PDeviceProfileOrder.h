// SPDX-License-Identifier: MIT
#pragma once

#include <QList>

class PDeviceProperty;

/// In which order the settings of a device are sent, as some change what others mean: switches and
/// choices (automatic modes, binning, rotation), composites, numbers, and the region last, which
/// binning and the like limit or reset. The device's thread.
class PDeviceProfileOrder {
public:
    /// The same properties in that order, those of one kind in the order they had.
    static QList<PDeviceProperty*> sorted(QList<PDeviceProperty*> properties);
};
