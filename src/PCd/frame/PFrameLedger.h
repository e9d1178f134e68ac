// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QMetaType>
#include <QString>

#include <array>
#include <cstddef>

/// What finally happened to a frame. Every frame has exactly one outcome.
enum class PFrameOutcome : int {
    Delivered,      ///< reached the device's listeners
    LostInCamera,   ///< the camera made it, but it never left the SDK
    BadDepth,       ///< dropped by the plugin: bits of a pixel it does not know
    BadSize,        ///< dropped by the plugin: size and geometry do not add up
    NoMemory,       ///< dropped by the plugin: no memory for the pixels
    DroppedWaiting, ///< dropped because too much was waiting for the device's thread
    FailedInWriter, ///< a frame sink (a recorder) could not take it
    Failed,         ///< a listener failed over it
    NotRequested,   ///< arrived after the last requested frame
};
constexpr std::size_t PFrameOutcomeCount = 9;

/// The count of all frames that a device's camera has produced, by outcome. A value; any thread.
struct PFrameLedger {
    quint64 produced = 0; ///< frames counted when they appeared
    std::array<quint64, PFrameOutcomeCount>
        outcomes{};        ///< frames counted when their outcome was known
    quint64 waiting = 0;   ///< on the way to the device's thread now
    quint64 snapshots = 0; ///< pictures handed out as snapshots, live frames made so included

    quint64 count(PFrameOutcome outcome) const { return outcomes[std::size_t(outcome)]; }
    /// True if every frame that appeared has its outcome or is waiting.
    bool isBalanced() const;
    /// The ledger of the time since `start`, an earlier ledger of the same device. What was waiting
    /// then gets its outcome in this time, so it counts as produced in it: the result balances
    /// where both do. `waiting` stays what it is now.
    PFrameLedger since(const PFrameLedger& start) const;

    /// Every outcome, in order.
    static const std::array<PFrameOutcome, PFrameOutcomeCount>& allOutcomes();
    /// "delivered", "lost_in_camera" …: for scripts.
    static QByteArray key(PFrameOutcome outcome);
    /// "delivered", "lost in the camera" …: for the user.
    static QString title(PFrameOutcome outcome);
};

Q_DECLARE_METATYPE(PFrameLedger)
