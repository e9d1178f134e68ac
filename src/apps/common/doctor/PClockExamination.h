// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/doctor/PFinding.h>
#include <apps/common/system/PSystemClock.h>

/// Examines the clocks that give frames their times. Any thread.
class PClockExamination {
public:
    explicit PClockExamination(PSystemClock clock);

    /// What time is counted with, and whether the time of day is right.
    QList<PFinding> run() const;

private:
    PFinding examineSource() const;
    PFinding examineTimeOfDay() const;

    const PSystemClock m_clock;
};
