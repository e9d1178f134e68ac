// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/cli/PCtlOptions.h>
#include <apps/pcdctl/completion/PCandidate.h>

/// The names that a new picture file, recording or series can have. Any thread.
class PFileCandidates {
public:
    /// What was typed of the name, without an ending, with each format that the command can write;
    /// nothing before the name itself was typed.
    static PCandidates forOutput(PCtlOptions::Command command, const QString& typed);
    /// The same for a series of pictures: with "-####" before the ending, unless there is a #.
    static PCandidates forSeries(const QString& typed);
};
