// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/PDeviceProperty.h>

#include <PCore/PExport.h>
#include <PCore/PStatus.h>

#include <QCoreApplication>
#include <QList>

#include <vector>

/// Reads properties from their device, for listing, saving or comparing: while this object exists,
/// valueInner() and rangeInner() return what was read. Nothing is emitted, so no panel reacts by
/// writing. What the device did not report is unread, and invalid. The destructor restores the
/// cached values, so the next updateValueFromDevice() still detects and emits what has changed.
/// Nothing may be set meanwhile. The device's thread.
class PCD_EXPORT PQuietReading {
    Q_DECLARE_TR_FUNCTIONS(PQuietReading)

public:
    explicit PQuietReading(const QList<PDeviceProperty*>& properties);
    ~PQuietReading();
    PQuietReading(const PQuietReading&) = delete;
    PQuietReading& operator=(const PQuietReading&) = delete;

    /// Fails if the device did not answer (PReadWatch), with a sentence that names the properties
    /// which could not be read.
    PStatus status() const;

private:
    struct Known {
        PDeviceProperty* property;
        PDeviceProperty::Cached cached; ///< from before
        QVariant range;                 ///< likewise
        bool hasFailed;
    };

    std::vector<Known> m_known;
};
