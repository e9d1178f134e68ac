// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/cli/PCtlOptions.h>

#include <apps/common/camera/PCameraHost.h>
#include <apps/common/doctor/PFinding.h>

#include <optional>

/// Searches for cameras, opens one and takes frames for a moment, to see whether it works and how
/// much it sends. The main thread.
class PCameraTrial {
public:
    /// Uses the camera that these options choose.
    PCameraTrial(PCameraHost& host, const PCtlOptions& options);

    /// Which cameras there are, what the plugins logged about them, and whether the chosen one
    /// works.
    QList<PFinding> run();

    /// Megabytes per second; nothing if no stream has shown it.
    std::optional<double> rate() const { return m_rate; }

private:
    QList<PFinding> search();
    PFinding stream(PDevice* device);

    PCameraHost& m_host;
    PCtlOptions m_options;
    std::optional<double> m_rate;
};
