// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/cli/PCtlOptions.h>
#include <apps/pcdctl/cli/PCtlOutcome.h>

#include <apps/common/camera/PSdkReplay.h>

#include <functional>

/// The command `replay`: runs another command against a trace in place of a camera. The main
/// thread.
class PReplayRun {
public:
    /// Runs a command with these options to its end.
    using Command = std::function<PCtlOutcome(const PCtlOptions&)>;

    /// Takes the options of `replay` and what runs the other command.
    PReplayRun(const PCtlOptions& options, const Command& command);

    /// Runs the command that is given, else the recorded one, and reports on the standard error
    /// stream whether its calls were those of the trace. The outcome of the command, or a failure
    /// if the trace cannot be used, or calls differ.
    PCtlOutcome run();

private:
    PCtlOutcome readCommand(PCtlOptions& command) const;
    PCtlOutcome judge(const PCtlOutcome& outcome) const;

    const PCtlOptions m_options;
    const Command m_command;
    PSdkReplay m_replay;
};
