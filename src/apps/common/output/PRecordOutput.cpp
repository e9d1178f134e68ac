// SPDX-License-Identifier: MIT
#include <apps/common/output/PRecordOutput.h>

#include <apps/common/camera/PSensorTemperature.h>
#include <apps/common/camera/PSettingNames.h>
#include <apps/common/ome/POmeStackWriter.h>
#include <apps/common/picture/PPictureFile.h>
#include <apps/common/record/PFileSequence.h>
#include <apps/common/record/PSeriesWriter.h>
#include <apps/common/zarr/PZarrWriter.h>

#include <PCd/device/PDevice.h>

#include <QFileInfo>

PRecordOutput::Form PRecordOutput::toForm(const QString& path) {
    if (PZarrWriter::isName(path))
        return Form::Zarr;
    return POmeStackWriter::isName(path) ? Form::Stack : Form::Series;
}

PStatus PRecordOutput::checkName(const QString& path) {
    const Form form = toForm(path);
    const bool hasNumber = QFileInfo(path).fileName().contains(u'#');
    if (form == Form::Series && hasNumber)
        return checkSeries(path);
    if (form == Form::Series)
        return PStatus::failure(
            u"\"%1\" is not the name of a recording: expected a name that ends in .ome.tif or "
            ".ome.zarr, or one with a run of # for the number of each file, as in "
            "\"frame-####.png\""_qs.arg(path));
    if (!hasNumber)
        return PStatus::Ok;
    return PStatus::failure(u"\"%1\" is one %2 with all frames: expected a name without #"_qs.arg(
        path, form == Form::Zarr ? u"folder"_qs : u"file"_qs));
}

PStatus PRecordOutput::checkSeries(const QString& path) {
    PFileSequence files;
    const PStatus status = files.setPattern(path);
    return status.isOk() ? PPictureFile::checkName(path) : status;
}

std::unique_ptr<PFrameWriter>
PRecordOutput::makeWriter(const Options& options, const PCameraIdentity& camera, PDevice& device) {
    switch (toForm(options.path)) {
    case Form::Stack:
        return std::make_unique<POmeStackWriter>(POmeStackWriter::Options{
            options.path, camera, PSettingNames::of(&device), options.frames, options.pixelSizeUm,
            PSensorTemperature::of(device)});
    case Form::Zarr:
        return std::make_unique<PZarrWriter>(PZarrWriter::Options{
            options.path, camera, PSettingNames::of(&device), options.pixelSizeUm,
            PSensorTemperature::of(device), options.pyramid});
    case Form::Series:
        break;
    }
    return makeSeries(options.path, camera, options.pixelSizeUm);
}

std::unique_ptr<PFrameWriter> PRecordOutput::makeSeries(const QString& path,
                                                        const PCameraIdentity& camera,
                                                        std::optional<double> pixelSizeUm) {
    PFileSequence files;
    files.setPattern(path);
    return std::make_unique<PSeriesWriter>(files, camera, pixelSizeUm);
}
