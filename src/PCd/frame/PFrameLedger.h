// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <QByteArray>
#include <QMetaType>
#include <QString>

#include <array>
#include <cstddef>

/// What finally happened to a frame. Every frame has exactly one outcome.
enum class PFrameOutcome : int {
    Delivered,      ///< reached the device's listeners
    LostInCamera,   ///< the camera took it, but the SDK did not deliver it
    BadDepth,       ///< dropped by the plugin: unsupported number of bits per pixel
    BadSize,        ///< dropped by the plugin: size and geometry do not add up
    NoMemory,       ///< dropped by the plugin: no memory for the pixels
    DroppedWaiting, ///< dropped because the queue for the device's thread was full
    FailedInWriter, ///< a frame sink (a recorder) could not take it
    Failed,         ///< a listener failed while handling it
    NotRequested,   ///< arrived after the last requested frame
};
constexpr std::size_t PFrameOutcomeCount = 9;

/// The count of all frames that a device's camera has produced, by outcome. A value type; any
/// thread.
struct PCD_EXPORT PFrameLedger {
    quint64 produced = 0; ///< frames counted when they appeared
    std::array<quint64, PFrameOutcomeCount>
        outcomes{};        ///< frames counted when their outcome was known
    quint64 waiting = 0;   ///< queued for the device's thread now
    quint64 snapshots = 0; ///< frames emitted as snapshots, including forwarded live frames

    quint64 count(PFrameOutcome outcome) const { return outcomes[std::size_t(outcome)]; }
    /// True if every frame counted has an outcome or is waiting.
    bool isBalanced() const;
    /// The ledger since `start`, an earlier ledger of the same device. Frames that were waiting
    /// then get their outcome in this period, so they count as produced in it: if both ledgers
    /// balance, so does the result. `waiting` keeps its present value.
    PFrameLedger since(const PFrameLedger& start) const;

    /// Every outcome, in order.
    static const std::array<PFrameOutcome, PFrameOutcomeCount>& allOutcomes();
    /// The outcome's name for scripts: "delivered", "lost_in_camera" …
    static QByteArray key(PFrameOutcome outcome);
    /// The outcome's name for the user: "delivered", "lost in the camera" …
    static QString title(PFrameOutcome outcome);
};

Q_DECLARE_METATYPE(PFrameLedger)
