// SPDX-License-Identifier: MIT
#include <apps/pcdctl/runs/PRecordRun.h>

#include <apps/pcdctl/cli/PCtlOutput.h>

#include <apps/common/camera/PSensorTemperature.h>
#include <apps/common/ome/POmeStackWriter.h>
#include <apps/common/zarr/PZarrWriter.h>

#include <QFileInfo>

PCtlOutcome PRecordRun::prepare() {
    record(makeWriter(), {options().frames, options().duration, options().interval});
    return {};
}

std::unique_ptr<PFrameWriter> PRecordRun::makeWriter() const {
    PDevice* const device = session().device();
    if (PZarrWriter::isName(options().output)) {
        return std::make_unique<PZarrWriter>(PZarrWriter::Options{
            options().output, camera(), PSettingNames::of(device), options().pixelSizeUm,
            PSensorTemperature::of(*device), options().pyramid});
    }
    if (!POmeStackWriter::isName(options().output))
        return seriesWriter(options().output);
    return std::make_unique<POmeStackWriter>(POmeStackWriter::Options{
        options().output, camera(), PSettingNames::of(device), options().frames,
        options().pixelSizeUm, PSensorTemperature::of(*device)});
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
