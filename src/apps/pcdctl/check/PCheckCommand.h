// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/cli/PCtlOptions.h>
#include <apps/pcdctl/cli/PCtlOutcome.h>

class PCtlHost;

/// @file
/// The command `check`: examines whether a device and its plugin do what hosts rely on. The main
/// thread.

/// Wrong usage if a filter matches no rule; fails if the results could not be written to their
/// file. Needs no camera.
PCtlOutcome prepareCheck(const PCtlOptions& options);
/// Lists the rules of --list. Needs no camera.
PCtlOutcome runCheckList(const PCtlOptions& options);
/// Examines the camera and prints the results. Done only if nothing failed and something was
/// examined.
PCtlOutcome runCheckCommand(PCtlHost& host, const PCtlOptions& options);
