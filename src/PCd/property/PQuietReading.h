// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/PDeviceProperty.h>

#include <PCore/PExport.h>

#include <QList>

#include <vector>

/// Reads properties from their device, for listing, saving or comparing: while this object exists,
/// valueInner() and rangeInner() return what was read. Nothing is emitted, so no panel reacts by
/// writing. The destructor restores the cached values, so the next updateValueFromDevice() still
/// detects and emits what has changed. Nothing may be set meanwhile. The device's thread.
class PCD_EXPORT PQuietReading {
public:
    explicit PQuietReading(const QList<PDeviceProperty*>& properties);
    ~PQuietReading();
    PQuietReading(const PQuietReading&) = delete;
    PQuietReading& operator=(const PQuietReading&) = delete;

private:
    struct Known {
        PDeviceProperty* property;
        PDeviceProperty::Reading copy; ///< the cached one, from before
    };

    std::vector<Known> m_known;
};
