// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/cli/PCtlOptions.h>
#include <apps/pcdctl/cli/PCtlOutcome.h>

/// The command `doctor`: examines and prints the findings, or writes a udev rule. The outcome is
/// that of the worst finding. The main thread.
PCtlOutcome runDoctorCommand(const PCtlOptions& options);
