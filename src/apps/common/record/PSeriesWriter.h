// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/camera/PCameraIdentity.h>
#include <apps/common/record/PFileSequence.h>
#include <apps/common/record/PFrameWriter.h>

/// Writes a recording as a series of PNG or TIFF files, one per frame, each with its PPictureNotes.
/// Never overwrites a file.
class PSeriesWriter : public PFrameWriter {
public:
    /// The pixel size is that of a pixel as saved, on the specimen, in micrometres.
    PSeriesWriter(PFileSequence files, PCameraIdentity camera,
                  std::optional<double> pixelSizeUm = std::nullopt)
        : m_files(std::move(files))
        , m_camera(std::move(camera))
        , m_pixelSizeUm(pixelSizeUm) {}

    int threads() const override { return 2; }
    PStatus write(const PDeviceFrame& frame, quint64 number) override;
    PStatus finish(const PRecordEnd&) override { return PStatus::Ok; }

private:
    const PFileSequence m_files;
    const PCameraIdentity m_camera;
    const std::optional<double> m_pixelSizeUm;
};
