// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/cli/PCtlOptions.h>
#include <apps/pcdctl/cli/PCtlOutcome.h>

#include <apps/common/camera/PCameraHost.h>
#include <apps/common/doctor/PFinding.h>
#include <apps/common/system/PSystemTree.h>

/// All examinations, from the SDK to the clock. The main thread.
class PDoctorRun {
public:
    PDoctorRun(const PCtlOptions& options, PSystemTree system);

    /// Examines everything that can be, whatever else is wrong. Wrong usage if a scene cannot be
    /// used; failed if the user interrupts.
    PCtlOutcome run();

    const QList<PFinding>& findings() const { return m_findings; }

private:
    PCtlOutcome examineSdk();
    PCtlOutcome startTrace();
    void examinePlugins();
    void examineCamera();
    void examineUsb();
    void examineComputer();

    const PCtlOptions m_options;
    const PSystemTree m_system;
    PCameraHost m_host;
    bool m_hasSdk = false;
    std::optional<double> m_rate;
    QList<PFinding> m_findings;
};
