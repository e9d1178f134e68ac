// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/cli/PCheckOptions.h>
#include <apps/pcdctl/cli/PDoctorOptions.h>
#include <apps/pcdctl/cli/PPipeOptions.h>

#include <apps/common/camera/PTriggerControl.h>
#include <apps/common/program/PProgramOptions.h>

#include <chrono>

/// What the user requested on the command line. A value type; any thread.
struct PCtlOptions : PProgramOptions {
    /// The command: the first word, see PCtlSyntax.
    enum class Command {
        List,
        Modes,
        Props,
        Get,
        Set,
        Profile,
        Reset,
        Snap,
        Stream,
        Trigger,
        Record,
        Monitor,
        Check,
        Doctor,
        Replay
    };
    /// The second word of the command `profile`.
    enum class ProfileAction { Save, Load, Diff };

    Command command = Command::List;

    bool json = false;

    QStringList words; ///< after the command: properties, or settings "ID=VALUE"

    QStringList replayed; ///< replay: the command to run; empty: the recorded one

    // How the camera is prepared, in this order, before the command does its work.
    QString mode;     ///< id or name; empty: as it is
    QString profile;  ///< file; empty: none
    QStringList sets; ///< settings "ID=VALUE"

    ProfileAction profileAction = ProfileAction::Save; ///< profile: what to do
    QString profileFile;                               ///< profile: with this file

    std::optional<std::chrono::milliseconds> timeout; ///< longest wait for a picture or answer
    /// The longest wait for the next frame of a stream: the timeout, else longer than most
    /// exposures.
    std::chrono::milliseconds frameTimeout() const {
        return timeout.value_or(std::chrono::seconds(30));
    }

    bool keepsFiles = true; ///< false in a replay that removes what the command writes

    QString output; ///< snap: the picture file; record: the recording or the pattern of files

    std::optional<quint64> frames; ///< stream, trigger, record: number of frames
    std::optional<std::chrono::milliseconds> duration; ///< stream, record, monitor: length of it
    QString savePattern; ///< stream, trigger: picture files; empty: none

    PTriggerControl::Source source = PTriggerControl::Source::Software; ///< trigger
    std::optional<std::chrono::microseconds> exposure; ///< trigger: of a frame; none: as it is

    std::optional<std::chrono::milliseconds> interval; ///< record: of a time-lapse; none: all
    std::optional<double> pixelSizeUm;                 ///< on the specimen, as saved
    bool pyramid = false;                              ///< record: also each frame in smaller sizes

    PPipeOptions pipe; ///< stream

    std::optional<std::chrono::milliseconds> hang; ///< check: in which the driver must return
    /// The same if there is none.
    std::chrono::milliseconds hangTime() const { return hang.value_or(std::chrono::seconds(30)); }

    PCheckOptions check;
    PDoctorOptions doctor;
};
