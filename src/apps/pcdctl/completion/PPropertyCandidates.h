// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/completion/PCandidate.h>

class PDeviceProperty;

/// What one property of a camera offers to complete a command line. The main thread.
class PPropertyCandidates {
public:
    /// Its id, as commands take it that show values; nothing for an action.
    static PCandidates id(const PDeviceProperty& property);
    /// The beginnings of its settings: "ID=", "ID.FIELD=" for each field of a composite, "ID" for
    /// an action.
    static PCandidates settings(const PDeviceProperty& property);
    /// The settings "NAME=VALUE" if the name is its id, or its id with a field: all choices, and of
    /// other values the present one, the default and the limits.
    static PCandidates values(const PDeviceProperty& property, const QString& name);
};
