// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/cli/PCtlOptions.h>
#include <apps/pcdctl/cli/PCtlOutcome.h>

#include <PCd/profile/PDeviceProfileReport.h>

class PCameraSession;

/// Applies the profile and the settings of the options to a camera that is linked and in its mode.
/// The main thread.
class PCameraSetup {
public:
    PCameraSetup(PCameraSession& session, const PCtlOptions& options);

    /// The profile, then the settings. Fails, naming each value that was not applied.
    PCtlOutcome run();

    /// Applies a profile alone. Fails if it is damaged, with nothing set; else the report lists
    /// what was applied and what was not.
    PCtlOutcome loadProfile(const QString& path, PDeviceProfileReport& report);

private:
    PCtlOutcome runProfile();

    PCameraSession& m_session;
    const PCtlOptions& m_options;
};
