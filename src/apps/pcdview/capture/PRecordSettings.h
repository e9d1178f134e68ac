// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/record/PRecordSchedule.h>

#include <QString>

/// What the user wants to record. A value type; the GUI thread.
struct PRecordSettings {
    /// What ends the recording.
    enum class End { AfterFrames, AfterTime, ByHand };
    /// The files that are written: one stack, one file a frame, or one folder. The numbers are in
    /// the users' settings.
    enum class Format { OmeTiff, TiffSeries, PngSeries, OmeZarr };

    End end = End::AfterFrames;
    int frames = 50;
    double seconds = 10;
    bool isTimeLapse = false;
    double intervalSeconds = 10;
    Format format = Format::OmeTiff;

    /// The plan of a recording with these settings.
    PRecordSchedule::Plan plan() const;

    /// The settings of the last call of remember(), or else the defaults above.
    static PRecordSettings remembered();
    void remember() const;
};
