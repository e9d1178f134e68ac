// SPDX-License-Identifier: MIT
#include <apps/pcdview/capture/PRecordSettings.h>

#include <QSettings>

#include <algorithm>

namespace {

const QString endKey = u"record/end"_qs;
const QString framesKey = u"record/frames"_qs;
const QString secondsKey = u"record/seconds"_qs;
const QString timeLapseKey = u"record/timeLapse"_qs;
const QString intervalKey = u"record/interval"_qs;
const QString formatKey = u"record/format"_qs;

constexpr int lastEnd = int(PRecordSettings::End::ByHand);
constexpr int lastFormat = int(PRecordSettings::Format::OmeZarr);

PRecordSchedule::Duration toDuration(double seconds) {
    return std::chrono::duration_cast<PRecordSchedule::Duration>(
        std::chrono::duration<double>(seconds));
}

/// A number from the settings file, which users can edit.
int readChoice(const QString& key, int last) {
    return std::clamp(QSettings().value(key, 0).toInt(), 0, last);
}

} // namespace

PRecordSchedule::Plan PRecordSettings::plan() const {
    PRecordSchedule::Plan plan;
    if (end == End::AfterFrames)
        plan.frames = quint64(frames);
    if (end == End::AfterTime)
        plan.duration = toDuration(seconds);
    if (isTimeLapse)
        plan.interval = toDuration(intervalSeconds);
    return plan;
}

PRecordSettings PRecordSettings::remembered() {
    const QSettings stored;
    PRecordSettings settings;
    settings.end = End(readChoice(endKey, lastEnd));
    settings.frames = std::max(stored.value(framesKey, settings.frames).toInt(), 1);
    settings.seconds = stored.value(secondsKey, settings.seconds).toDouble();
    settings.isTimeLapse = stored.value(timeLapseKey, settings.isTimeLapse).toBool();
    settings.intervalSeconds = stored.value(intervalKey, settings.intervalSeconds).toDouble();
    settings.format = Format(readChoice(formatKey, lastFormat));
    return settings;
}

void PRecordSettings::remember() const {
    QSettings stored;
    stored.setValue(endKey, int(end));
    stored.setValue(framesKey, frames);
    stored.setValue(secondsKey, seconds);
    stored.setValue(timeLapseKey, isTimeLapse);
    stored.setValue(intervalKey, intervalSeconds);
    stored.setValue(formatKey, int(format));
}
