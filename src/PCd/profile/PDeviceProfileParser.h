// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/profile/PDeviceProfile.h>

#include <PCore/PExport.h>
#include <PCore/PStatus.h>

class PAbstractReader;

/// The structure of a profile, whatever the file format: {format, version, camera: {model,
/// serial, mode, properties: {id: {value}}}}, where a value may be an object of fields. Any thread.
class PCD_EXPORT PDeviceProfileParser {
public:
    static constexpr int version = 1;
    static QString formatKey() { return u"format"_qs; }
    static QString versionKey() { return u"version"_qs; }
    static QString cameraKey() { return u"camera"_qs; }
    /// The value of formatKey() in a profile.
    static QString formatName() { return u"camera profile"_qs; }

    /// Reads a whole profile from a reader at its root. Fails, with the position and what was
    /// expected, on another format or version, an unexpected name, or a value that is missing or of
    /// another type. A property without a value (an action, a region that could not be read) is
    /// skipped.
    static PStatus parse(PAbstractReader& reader, PDeviceProfile& profile);
};
