// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/doctor/PFinding.h>
#include <apps/common/system/PSystemTree.h>

/// Examines whether other programs have the USB devices open that can be cameras. Any thread.
class PHolderExamination {
public:
    explicit PHolderExamination(PSystemTree system);

    /// One finding for each such device.
    QList<PFinding> run() const;

private:
    const PSystemTree m_system;
};
