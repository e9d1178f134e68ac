// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/doctor/PFinding.h>

/// Examines whether programs have left reports of faults. Any thread.
class PCrashExamination {
public:
    /// The newest report; nothing if there is none.
    static QList<PFinding> run();
};
