// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/doctor/PFinding.h>
#include <apps/common/system/PUsbBus.h>

/// Examines the links of the USB devices that can be cameras: slower than the device could, and
/// shared with other fast devices. Any thread.
class PUsbLinkExamination {
public:
    explicit PUsbLinkExamination(PSystemTree system);

    /// Two findings for each such device.
    QList<PFinding> run() const;

private:
    const PSystemTree m_system;
};
