// SPDX-License-Identifier: MIT
#include <apps/pcdctl/runs/PPipeRun.h>

#include <apps/pcdctl/cli/PCtlOutput.h>

namespace {

// What a reader has to take the frames that wait, once the user wants the program to end.
constexpr std::chrono::seconds timeAfterInterrupt(1);

} // namespace

PCtlOutcome PPipeRun::prepare() {
    auto target = std::make_unique<PStreamTarget>(options().pipe.target);
    m_target = target->name();
    const PCtlOutcome opened = open(*target);
    if (!opened.isDone())
        return opened;
    m_outlet = std::make_shared<PFrameOutlet>(options().pipe.makeCoding(camera()),
                                              std::move(target), options().frames);
    session().device()->addFrameSink(m_outlet);
    return {};
}

/// Waits for the reader of a named pipe.
PCtlOutcome PPipeRun::open(PStreamTarget& target) {
    std::optional<PStatus> opened;
    session().waitFor([&] {
        opened = target.tryOpen();
        return opened.has_value();
    });
    if (opened)
        return opened->isOk() ? PCtlOutcome() : PCtlOutcome::failed(opened->reason());
    return PCtlOutcome::failed(session().isUnplugged()
                                   ? u"camera %1 was unplugged before %2 had a reader"_qs.arg(
                                         session().cameraId(), m_target)
                                   : u"interrupted before %1 had a reader"_qs.arg(m_target));
}

/// A reader that has enough completes the run.
bool PPipeRun::isComplete() const {
    const PFrameOutlet::Progress progress = m_outlet->progress();
    return progress.isReaderGone ||
           (options().frames && progress.tally.taken() >= *options().frames);
}

bool PPipeRun::isOutputOver() const {
    return m_outlet->progress().isOver;
}

quint64 PPipeRun::framesTaken() const {
    return m_outlet->progress().tally.taken();
}

std::optional<double> PPipeRun::share() const {
    if (options().frames)
        return double(framesTaken()) / double(*options().frames);
    if (options().duration)
        return std::chrono::duration<double>(Clock::now() - startTime()) / *options().duration;
    return std::nullopt;
}

QString PPipeRun::statusText() const {
    const POutletTally frames = m_outlet->progress().tally;
    return u"%1 passed on  %2 waiting  %3 dropped  %4 fps"_qs.arg(
        PCtlOutput::toFrames(frames.written), QString::number(frames.waiting),
        QString::number(frames.dropped), QString::number(tally().currentFps(), 'f', 1));
}

/// A reader may take its time, as it may with any other program; after an interruption it has only
/// a moment.
void PPipeRun::finishOutput(const QString&) {
    m_outlet->end();
    bool hasLimit = false;
    while (!m_outlet->waitUntilFinished(std::chrono::milliseconds(100))) {
        if (session().isInterrupted() && !hasLimit)
            m_outlet->endWithin(timeAfterInterrupt);
        hasLimit = hasLimit || session().isInterrupted();
        const PFrameOutlet::Progress progress = m_outlet->progress();
        statusLine().show(u"writing: %1 left"_qs.arg(PCtlOutput::toFrames(progress.tally.waiting)));
    }
    m_closeError = m_outlet->close().reason();
}

QString PPipeRun::outputError() const {
    const PFrameOutlet::Progress progress = m_outlet->progress();
    if (!progress.error.isEmpty())
        return progress.error;
    const bool isCut = progress.tally.unwritten > 0 && !progress.isReaderGone;
    if (isCut && !mayEndNow())
        return u"interrupted after %1"_qs.arg(PCtlOutput::toFrames(progress.tally.written));
    return m_closeError;
}

bool PPipeRun::isOutputBalanced() const {
    return m_outlet->progress().tally.isBalanced();
}

PPipeReport PPipeRun::report(const PCtlOutcome& outcome) const {
    return {streamReport(outcome), m_target, m_outlet->progress()};
}
