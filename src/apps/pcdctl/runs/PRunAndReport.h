// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/camera/PCtlHost.h>
#include <apps/pcdctl/cli/PCtlOutput.h>

/// Executes a run (a PLiveRun with a report) with the selected camera, and prints its report if the
/// stream was started. The main thread.
template <typename Run>
PCtlOutcome runAndReport(PCtlHost& host, const PCtlOptions& options) {
    const PCtlHost::Choice choice = host.choose(options.camera);
    if (choice.device == nullptr)
        return choice.outcome;
    Run run(host.manager(), choice.device, host.identify(choice.device), options);
    const PCtlOutcome outcome = run.run();
    if (!run.wasStarted())
        return outcome;
    const auto report = run.report(outcome);
    if (options.json)
        PCtlOutput::printDocument(report.toJson());
    else
        PCtlOutput::printLines(report.toText());
    return outcome;
}
