// SPDX-License-Identifier: MIT
#include <apps/common/record/PSeriesWriter.h>

#include <apps/common/picture/PPictureFile.h>

PStatus PSeriesWriter::write(const PDeviceFrame& frame, quint64 number) {
    return PPictureFile::save(m_files.path(number), frame.image.toQImage(),
                              PPictureNotes::of(m_camera, frame.stamp.get(), m_pixelSizeUm),
                              PPictureFile::Existing::Keep, PPictureFile::Content::Frame);
}
