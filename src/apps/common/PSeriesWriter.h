// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/PCameraIdentity.h>
#include <apps/common/PFrameWriter.h>
#include <apps/common/PNumberedFiles.h>

/// Writes a recording as a series of PNG or TIFF files, one a frame, each with what pictureTextOf()
/// says. Never overwrites a file.
class PSeriesWriter : public PFrameWriter {
public:
    PSeriesWriter(PNumberedFiles files, PCameraIdentity camera)
        : m_files(std::move(files))
        , m_camera(std::move(camera)) {}

    int threads() const override { return 2; }
    PStatus write(const PDeviceFrame& frame, quint64 number) override;
    PStatus finish(const PRecordEnd&) override { return PStatus::Ok; }

private:
    const PNumberedFiles m_files;
    const PCameraIdentity m_camera;
};
