// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/cli/PCtlOptions.h>
#include <apps/pcdctl/cli/PCtlOutcome.h>

class PCtlHost;

/// The commands, one per file. Each runs to its end on the main thread, prints its results, and
/// returns its outcome.
PCtlOutcome runListCommand(PCtlHost& host, const PCtlOptions& options);
PCtlOutcome runModesCommand(PCtlHost& host, const PCtlOptions& options);
PCtlOutcome runPropsCommand(PCtlHost& host, const PCtlOptions& options);
PCtlOutcome runGetCommand(PCtlHost& host, const PCtlOptions& options);
PCtlOutcome runSetCommand(PCtlHost& host, const PCtlOptions& options);
PCtlOutcome runProfileCommand(PCtlHost& host, const PCtlOptions& options);
PCtlOutcome runResetCommand(PCtlHost& host, const PCtlOptions& options);
PCtlOutcome runSnapCommand(PCtlHost& host, const PCtlOptions& options);
/// Free-running, or triggered.
PCtlOutcome runStreamCommand(PCtlHost& host, const PCtlOptions& options);
PCtlOutcome runRecordCommand(PCtlHost& host, const PCtlOptions& options);
PCtlOutcome runMonitorCommand(PCtlHost& host, const PCtlOptions& options);

/// Checks a command's files before any camera is opened. Creates the folders of files that will be
/// written.
PCtlOutcome prepareSnapFiles(const PCtlOptions& options);
PCtlOutcome prepareProfileFile(const PCtlOptions& options);
PCtlOutcome prepareStreamFiles(const PCtlOptions& options);
PCtlOutcome prepareRecordFiles(const PCtlOptions& options);
