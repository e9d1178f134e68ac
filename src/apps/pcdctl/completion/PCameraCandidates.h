// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/camera/PCtlHost.h>
#include <apps/pcdctl/completion/PCandidate.h>

#include <functional>

/// What the cameras that are present offer to complete a command line: nothing where there is no
/// camera or it cannot be opened. The main thread.
class PCameraCandidates {
public:
    /// Loads the SDK and the plugins, and finds the cameras. Opens none.
    explicit PCameraCandidates(const PCtlOptions& options);

    /// The ids of the cameras.
    PCandidates cameras();
    /// The modes of the selected camera, by name; by id where two modes have one name.
    PCandidates modes();
    /// The ids of the properties that have a value, or a default. Opens the camera.
    PCandidates properties();
    PCandidates propertiesWithDefaults();
    /// What may follow the beginning of a setting: ids with "=" and actions, or, after "=", values.
    /// Opens the camera.
    PCandidates settings(const QString& typed);

private:
    PCandidates withDevice(const std::function<PCandidates(PDevice&)>& collect);
    PCandidates withProperties(const std::function<PCandidates(const PDeviceProperty&)>& collect);

    PCtlHost m_host;
    QString m_camera;
    bool m_isStarted;
};
