// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/cli/PCtlOptions.h>
#include <apps/pcdctl/cli/PCtlOutcome.h>

#include <PCd/profile/PDeviceProfileReport.h>

class PCameraSession;

/// Brings a camera that has been linked, and is in its mode, into the state that a profile and
/// settings of the options ask for. The main thread.
class PCameraSetup {
public:
    PCameraSetup(PCameraSession& session, const PCtlOptions& options);

    /// The profile, then the settings. Fails with each value that is not in force then.
    PCtlOutcome run();

    /// Loads a profile alone. Fails if it is damaged, with nothing set; else the report says what
    /// came of it.
    PCtlOutcome loadProfile(const QString& path, PDeviceProfileReport& report);

private:
    PCtlOutcome runProfile();

    PCameraSession& m_session;
    const PCtlOptions& m_options;
};
