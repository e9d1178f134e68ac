// SPDX-License-Identifier: MIT
#include <apps/pcdctl/runs/PStreamRun.h>

#include <apps/pcdctl/cli/PCtlOutput.h>

#include <apps/common/output/PRecordOutput.h>

namespace {

quint64 lostFrames(const PFrameLedger& ledger) {
    return ledger.produced - ledger.waiting - ledger.count(PFrameOutcome::Delivered) -
           ledger.count(PFrameOutcome::NotRequested);
}

} // namespace

PCtlOutcome PStreamRun::prepare() {
    const QString& pattern = options().savePattern;
    if (!pattern.isEmpty()) // all frames that the stream has
        record(PRecordOutput::makeSeries(pattern, camera(), options().pixelSizeUm), {});
    return options().command == PCtlOptions::Command::Trigger ? prepareTrigger() : PCtlOutcome();
}

PCtlOutcome PStreamRun::prepareTrigger() {
    auto trigger = std::make_unique<PTriggerControl>(*session().device());
    const PStatus status =
        trigger->prepare(options().source, options().exposure, int(options().frames.value_or(1)));
    if (!status.isOk())
        return PCtlOutcome::failed(status.reason());
    m_trigger = std::move(trigger);
    return {};
}

PCtlOutcome PStreamRun::afterStart() {
    if (!m_trigger || options().source == PTriggerControl::Source::External)
        return {};
    return fireTrigger(options().frames ? int(*options().frames) : PTriggerControl::endless);
}

void PStreamRun::beforeStop() {
    if (m_trigger)
        fireTrigger(0);
}

PCtlOutcome PStreamRun::fireTrigger(int frames) {
    const PStatus status = m_trigger->fire(frames);
    return status.isOk() ? PCtlOutcome() : PCtlOutcome::failed(status.reason());
}

bool PStreamRun::isComplete() const {
    return options().frames && tally().frames() >= *options().frames;
}

/// A triggered frame is due when its exposure is over.
std::chrono::microseconds PStreamRun::longestWait() const {
    const std::chrono::microseconds exposure =
        m_trigger ? m_trigger->exposure() : std::chrono::microseconds(0);
    return exposure + PLiveRun::longestWait();
}

/// The probable position of the missing frame of a triggered run: frames have no numbers from the
/// camera, but one that is missing in the middle leaves a gap in time.
QString PStreamRun::stallReason() const {
    if (!m_trigger)
        return PLiveRun::stallReason();
    QString text = u"frame %1"_qs.arg(tally().frames() + 1);
    if (options().frames)
        text += u" of %1"_qs.arg(*options().frames);
    text += u" did not arrive within %1 s of %2"_qs.arg(
        QString::number(std::chrono::duration<double>(longestWait()).count()),
        tally().frames() > 0 ? u"the one before"_qs : u"the start"_qs);
    if (tally().frames() >= 2) {
        text += u"; %1 arrived, and the longest gap, %2 s, is after frame %3"_qs.arg(
            QString::number(tally().frames()),
            QString::number(tally().longestGap().seconds, 'f', 3),
            QString::number(tally().longestGap().after));
    }
    return text;
}

std::optional<double> PStreamRun::share() const {
    if (options().frames)
        return double(tally().frames()) / double(*options().frames);
    if (options().duration)
        return std::chrono::duration<double>(Clock::now() - startTime()) / *options().duration;
    return std::nullopt;
}

QString PStreamRun::statusText() const {
    const double fps = tally().currentFps();
    QString text = u"%1  %2 fps  %3 MB/s  lost %4"_qs.arg(
        PCtlOutput::toFrames(tally().frames()), QString::number(fps, 'f', 1),
        QString::number(fps * double(tally().frameBytes()) / 1e6, 'f', 1),
        QString::number(lostFrames(session().ledger())));
    if (recorder() != nullptr)
        text += u"  saved %1"_qs.arg(recorder()->progress().tally.written);
    return text;
}

PStreamReport PStreamRun::report(const PCtlOutcome& outcome) const {
    PStreamReport report = streamReport(outcome);
    if (recorder() != nullptr)
        report.saved = recorder()->progress().tally.written;
    return report;
}
