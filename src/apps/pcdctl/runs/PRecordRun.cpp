// SPDX-License-Identifier: MIT
#include <apps/pcdctl/runs/PRecordRun.h>

#include <apps/pcdctl/cli/PCtlOutput.h>

#include <apps/common/output/PRecordOutput.h>

#include <QFileInfo>

PCtlOutcome PRecordRun::prepare() {
    const PCtlOptions& given = options();
    record(PRecordOutput::makeWriter({given.output, given.frames, given.pixelSizeUm, given.pyramid},
                                     camera(), *session().device()),
           {given.frames, given.duration, given.interval});
    return {};
}

quint64 PRecordRun::framesTaken() const {
    const PRecordTally tally = recorder()->progress().tally;
    return tally.written + tally.waiting;
}

QString PRecordRun::statusText() const {
    const PRecordTally frames = recorder()->progress().tally;
    QString text = u"%1 written  %2 waiting  %3 dropped"_qs.arg(
        PCtlOutput::toFrames(frames.written), QString::number(frames.waiting),
        QString::number(frames.failed + frames.refused));
    if (options().frames)
        text += u"  %1 remaining"_qs.arg(frames.wanted - frames.written);
    return text + u"  %1 fps"_qs.arg(tally().currentFps(), 0, 'f', 1);
}

PRecordReport PRecordRun::report(const PCtlOutcome& outcome) const {
    return {streamReport(outcome), QFileInfo(options().output).absoluteFilePath(),
            recorder()->progress().tally};
}
