// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/PDeviceProperty.h>

#include <QList>

#include <vector>

/// Reads properties from their device for whoever lists, saves or compares: while it lives,
/// valueInner() and rangeInner() of each are what the device has. Nothing is emitted, so no panel
/// answers by writing, and at its end each property has its copy back: the next
/// updateValueFromDevice() still finds, and emits, what has changed. Nothing may be set meanwhile.
/// The device's thread.
class PQuietReading {
public:
    explicit PQuietReading(const QList<PDeviceProperty*>& properties);
    ~PQuietReading();
    PQuietReading(const PQuietReading&) = delete;
    PQuietReading& operator=(const PQuietReading&) = delete;

private:
    struct Known {
        PDeviceProperty* property;
        PDeviceProperty::Reading copy; ///< the host's, from before
    };

    std::vector<Known> m_known;
};
