// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/record/PRecordTally.h>

#include <PCd/frame/PDeviceFrame.h>
#include <PCd/frame/PFrameLedger.h>

#include <PCore/PStatus.h>

#include <optional>

/// The data known when a recording has ended.
struct PRecordEnd {
    PRecordTally tally;
    std::optional<PFrameLedger>
        ledger;      ///< of the camera, while it was recorded; nothing if unknown
    QString failure; ///< why it did not end as planned; empty: it did
};

/// Puts the frames of one recording into files. Made on one thread, used on others.
class PFrameWriter {
public:
    virtual ~PFrameWriter() = default;

    /// How many threads may call write() at once.
    virtual int threads() const = 0;
    /// Writes a frame; the first has the number 1. Fails with the file and the reason.
    virtual PStatus write(const PDeviceFrame& frame, quint64 number) = 0;
    /// Once, after the last write(), also if that failed: completes the files.
    virtual PStatus finish(const PRecordEnd& end) = 0;
    /// After finish(): how many written frames readers do not find in the files, because something
    /// else changed these.
    virtual quint64 missing() const { return 0; }
};
