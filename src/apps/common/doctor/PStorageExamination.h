// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/doctor/PFinding.h>
#include <apps/common/system/PDiskSpeed.h>
#include <apps/common/system/PSystemTree.h>

#include <optional>

/// Examines whether memory and disk are enough for recordings. Any thread.
class PStorageExamination {
public:
    /// The folder of the recordings; the camera's rate in megabytes (millions of bytes) per second,
    /// if known; and how many bytes of frames may wait for the disk.
    PStorageExamination(PSystemTree system, const QString& folder, std::optional<double> cameraRate,
                        quint64 mostWaiting);

    /// Memory, then the disk, whose speed is measured for half a second.
    QList<PFinding> run() const;

    /// The finding on a disk whose speed was measured.
    PFinding judge(const PDiskSpeed::Result& disk) const;

private:
    PFinding examineMemory() const;

    const PSystemTree m_system;
    const QString m_folder;
    const std::optional<double> m_cameraRate;
    const quint64 m_mostWaiting;
};
