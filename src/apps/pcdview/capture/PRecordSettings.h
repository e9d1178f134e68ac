// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/record/PRecordSchedule.h>

#include <QString>

/// What the user wants to record. A value.
struct PRecordSettings {
    enum class End { AfterFrames, AfterTime, ByHand };
    enum class Format { OmeTiff, TiffSeries, PngSeries };

    End end = End::AfterFrames;
    int frames = 50;
    double seconds = 10;
    bool isTimeLapse = false;
    double intervalSeconds = 10;
    Format format = Format::OmeTiff;

    PRecordSchedule::Plan plan() const;

    /// Those of the last call of remember(); at first as above.
    static PRecordSettings remembered();
    void remember() const;
};
