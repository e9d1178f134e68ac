// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/cli/PCtlOptions.h>
#include <apps/pcdctl/cli/PCtlOutcome.h>

#include <apps/common/camera/PCameraHost.h>

/// The cameras of the program: SDK, plugins, devices. The main thread.
class PCtlHost {
public:
    /// Loads the SDK, the scene and the plugins, and finds the cameras. Prints on the standard
    /// error stream anything else that the user should know.
    PCtlOutcome start(const PCtlOptions& options);

    /// Fails if a trace was requested and is not complete.
    PCtlOutcome checkTrace() const;

    const PCameraSdk& sdk() const { return m_cameras.sdk(); }
    PDeviceManager& manager() { return m_cameras.manager(); }
    PCameraIdentity identify(const PDevice* device) const { return m_cameras.identify(device); }

    /// The camera that the user selected, or null and why.
    struct Choice {
        PDevice* device = nullptr;
        PCtlOutcome outcome;
    };
    /// The device with this index, id or prefix of an id; for an empty text, the first one.
    /// Otherwise an outcome that names what was given and the cameras that exist.
    Choice choose(const QString& camera) const;

private:
    PCtlOutcome startSdk(const PCtlOptions& options);
    PCtlOutcome loadPlugins(const PCtlOptions& options);

    PCameraHost m_cameras;
};
