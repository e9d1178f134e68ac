// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/doctor/PFinding.h>
#include <apps/common/system/PUsbBus.h>

/// Examines whether the user may open the USB devices that can be cameras. Any thread.
class PUsbAccessExamination {
public:
    /// A device that cannot be opened is an error if no camera was found, else a warning: it may be
    /// something else.
    PUsbAccessExamination(PSystemTree system, bool wereCamerasFound);

    /// One finding for each such device, or one that there is none.
    QList<PFinding> run() const;

private:
    PFinding examine(const PUsbDevice& device) const;
    PFinding report(const PUsbDevice& device, int error) const;
    QString findFix(const PUsbDevice& device, int error) const;

    const PSystemTree m_system;
    const bool m_wereCamerasFound;
};
